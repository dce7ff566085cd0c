#include "dmcommon/cache/dmtempfile.h"

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <utility>

namespace DMTempFiles {

namespace {

constexpr int kSeekOk = 0;
constexpr int kSeekFailed = -1;
constexpr int kFromStart = 0;
constexpr int kFromPosition = 1;
constexpr int kFromEnd = 2;

// The directory a file goes to when the caller names none.
std::string DefaultDirectory() {
  const char* fromEnvironment = std::getenv("TMPDIR");
  if (fromEnvironment != nullptr && *fromEnvironment != '\0') return fromEnvironment;
  return "/tmp";
}

// Reads until `count` bytes arrived, the end of the file or an error, and
// returns how many arrived; the system may hand out fewer bytes per call.
[[nodiscard]] size_t ReadAt(int fd, char* out, size_t count, long long offset) {
  size_t done = 0;
  while (done < count) {
    const ssize_t got = pread(fd, out + done, count - done,
                              static_cast<off_t>(offset + static_cast<long long>(done)));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    done += static_cast<size_t>(got);
  }
  return done;
}

// Writes until all `count` bytes are stored or an error stops it, and returns
// how many were stored.
[[nodiscard]] size_t WriteAt(int fd, const char* in, size_t count, long long offset) {
  size_t done = 0;
  while (done < count) {
    const ssize_t put = pwrite(fd, in + done, count - done,
                               static_cast<off_t>(offset + static_cast<long long>(done)));
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) break;
    done += static_cast<size_t>(put);
  }
  return done;
}

// Copies `count` bytes. The record cache moves flag bytes, 8-byte numbers
// and short texts one value at a time; those are copied here with at most
// two overlapping moves instead of a call into the C library.
inline void Copy(char* to, const void* from, size_t count) {
  const auto* in = static_cast<const char*>(from);
  if (count >= sizeof(uint64_t) && count <= 2 * sizeof(uint64_t)) {
    uint64_t head = 0;
    uint64_t tail = 0;
    std::memcpy(&head, in, sizeof(head));
    std::memcpy(&tail, in + count - sizeof(tail), sizeof(tail));
    std::memcpy(to, &head, sizeof(head));
    std::memcpy(to + count - sizeof(tail), &tail, sizeof(tail));
  } else if (count == 1) {
    *to = *in;
  } else if (count != 0) {
    std::memcpy(to, in, count);
  }
}

}  // namespace

// The buffer holds either bytes read ahead from the file (Reading) or bytes
// written but not yet stored (Writing), never both, so a file never has two
// versions of a byte. Each mode has its own pair of pointers into the
// buffer, null outside it, so that the common small read or write is one
// comparison and a copy. The file is read and written at explicit offsets,
// so the system's own file position plays no part.
class LocalTempFile::Impl {
 public:
  explicit Impl(const std::string& directory) {
    std::string pattern = directory.empty() ? DefaultDirectory() : directory;
    if (pattern.back() != '/') pattern += '/';
    pattern += "dmcache-XXXXXX";
    fd_ = mkstemp(pattern.data());
    if (fd_ < 0) return;
    // A program the caller starts must not inherit the file.
    (void)fcntl(fd_, F_SETFD, FD_CLOEXEC);
    path_ = std::move(pattern);
    buffer_ = std::make_unique<char[]>(kBufferSize);
  }

  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  ~Impl() {
    if (fd_ < 0) return;
    close(fd_);
    unlink(path_.c_str());
  }

  const char* Name() const { return path_.c_str(); }
  bool Valid() const { return fd_ >= 0; }

  // The whole read or write from or into the buffer, when it fits.
  bool TryRead(void* out, size_t count) {
    char* const next = readNext_;
    if (count > static_cast<size_t>(readEnd_ - next)) return false;
    Copy(static_cast<char*>(out), next, count);
    readNext_ = next + count;
    return true;
  }

  bool TryWrite(const void* in, size_t count) {
    char* const next = writeNext_;
    if (count > static_cast<size_t>(writeEnd_ - next)) return false;
    Copy(next, in, count);
    writeNext_ = next + count;
    return true;
  }

  // The slow paths stay out of line, so that the callers' fast paths need
  // no stack frame.
  [[gnu::noinline]] size_t Read(char* out, size_t count) {
    if (mode_ != Mode::Reading) StartReading();
    if (TryRead(out, count)) return count;
    size_t done = static_cast<size_t>(readEnd_ - readNext_);
    Copy(out, readNext_, done);
    readNext_ = readEnd_;
    while (done < count) {
      const long long offset = start_ + (readEnd_ - buffer_.get());
      const size_t wanted = count - done;
      if (wanted >= kBufferSize) {
        // Large reads go straight to the caller; copying them through the
        // buffer would only add a pass over the bytes.
        const size_t got = ReadAt(fd_, out + done, wanted, offset);
        done += got;
        start_ = offset + static_cast<long long>(got);
        readNext_ = readEnd_ = buffer_.get();
        break;
      }
      const size_t got = ReadAt(fd_, buffer_.get(), kBufferSize, offset);
      const size_t taken = std::min(got, wanted);
      start_ = offset;
      readEnd_ = buffer_.get() + got;
      Copy(out + done, buffer_.get(), taken);
      readNext_ = buffer_.get() + taken;
      done += taken;
      if (got < wanted) break;
    }
    return done;
  }

  [[gnu::noinline]] size_t Write(const char* in, size_t count) {
    if (mode_ != Mode::Writing) StartWriting();
    if (TryWrite(in, count)) return count;
    if (!Flush()) return 0;
    if (count >= kBufferSize) {
      const size_t put = WriteAt(fd_, in, count, start_);
      start_ += static_cast<long long>(put);
      size_ = std::max(size_, start_);
      return put;
    }
    Copy(writeNext_, in, count);
    writeNext_ += count;
    return count;
  }

  int Seek(long long offset, int origin) {
    // Appends seek to the end before every record, which is where they are.
    if (mode_ == Mode::Writing && origin == kFromEnd && offset == 0 &&
        start_ + (writeNext_ - buffer_.get()) >= size_) {
      return kSeekOk;
    }
    long long base = 0;
    switch (origin) {
      case kFromStart:
        break;
      case kFromPosition:
        base = Position();
        break;
      case kFromEnd:
        base = Size();
        break;
      default:
        return kSeekFailed;
    }
    // The base is at least 0, so only an overflow past the largest offset
    // remains to be refused beside a negative result.
    if (offset < -base) return kSeekFailed;
    if (offset > 0 && base > std::numeric_limits<long long>::max() - offset) return kSeekFailed;
    const long long target = base + offset;
    if (mode_ == Mode::Reading && target >= start_ &&
        target <= start_ + (readEnd_ - buffer_.get())) {
      // The cache seeks to where it stopped reading before every record;
      // inside the read-ahead that is only a move of the pointer.
      readNext_ = buffer_.get() + (target - start_);
      return kSeekOk;
    }
    if (mode_ == Mode::Writing && target == Position()) return kSeekOk;
    StopBuffering();
    position_ = target;
    return kSeekOk;
  }

 private:
  enum class Mode { Idle, Reading, Writing };

  long long Position() const {
    switch (mode_) {
      case Mode::Idle:
        return position_;
      case Mode::Reading:
        return start_ + (readNext_ - buffer_.get());
      case Mode::Writing:
        return start_ + (writeNext_ - buffer_.get());
    }
    return position_;
  }

  long long Size() const {
    if (mode_ != Mode::Writing) return size_;
    return std::max(size_, start_ + (writeNext_ - buffer_.get()));
  }

  // Stores the pending bytes and empties the buffer at the position after
  // them. Bytes that cannot be stored (a full disk) are lost; the write that
  // needed the room reports 0, and a read of them comes back short.
  [[nodiscard]] bool Flush() {
    const size_t pending = static_cast<size_t>(writeNext_ - buffer_.get());
    const size_t put = WriteAt(fd_, buffer_.get(), pending, start_);
    start_ += static_cast<long long>(pending);
    size_ = std::max(size_, start_);
    writeNext_ = buffer_.get();
    return put == pending;
  }

  // Leaves either mode for Idle at the current position.
  void StopBuffering() {
    const long long position = Position();
    if (mode_ == Mode::Writing) (void)Flush();
    mode_ = Mode::Idle;
    position_ = position;
    readNext_ = readEnd_ = writeNext_ = writeEnd_ = nullptr;
  }

  void StartReading() {
    StopBuffering();
    mode_ = Mode::Reading;
    start_ = position_;
    readNext_ = readEnd_ = buffer_.get();
  }

  void StartWriting() {
    StopBuffering();
    mode_ = Mode::Writing;
    start_ = position_;
    writeNext_ = buffer_.get();
    writeEnd_ = buffer_.get() + kBufferSize;
  }

  int fd_ = -1;
  std::string path_;
  std::unique_ptr<char[]> buffer_;
  Mode mode_ = Mode::Idle;
  // Idle: the position. Reading and Writing derive it from the pointers.
  long long position_ = 0;
  // Reading and Writing: the file offset of the buffer's first byte.
  long long start_ = 0;
  // Reading: the next byte to hand out and the end of the bytes read ahead.
  char* readNext_ = nullptr;
  char* readEnd_ = nullptr;
  // Writing: where the next byte goes and the end of the buffer.
  char* writeNext_ = nullptr;
  char* writeEnd_ = nullptr;
  // The file's size without the bytes not yet stored; only this object
  // writes to the file, so it never has to ask the system.
  long long size_ = 0;
};

LocalTempFile::LocalTempFile() : LocalTempFile(std::string()) {}

LocalTempFile::LocalTempFile(const std::string& directory)
    : impl_(std::make_unique<Impl>(directory)) {}

LocalTempFile::~LocalTempFile() = default;

const char* LocalTempFile::getName() const { return impl_->Name(); }

int LocalTempFile::isValid() const { return impl_->Valid() ? 1 : 0; }

size_t LocalTempFile::read(void* buffer, size_t count) {
  if (buffer == nullptr) return 0;
  if (impl_->TryRead(buffer, count)) return count;
  if (!impl_->Valid()) return 0;
  return impl_->Read(static_cast<char*>(buffer), count);
}

size_t LocalTempFile::write(const void* buffer, size_t count) {
  if (buffer == nullptr) return 0;
  if (impl_->TryWrite(buffer, count)) return count;
  if (!impl_->Valid()) return 0;
  return impl_->Write(static_cast<const char*>(buffer), count);
}

int LocalTempFile::seek(long long offset, int origin) {
  if (!impl_->Valid()) return kSeekFailed;
  return impl_->Seek(offset, origin);
}

}  // namespace DMTempFiles
