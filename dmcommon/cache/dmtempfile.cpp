#include "dmcommon/cache/dmtempfile.h"

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
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

}  // namespace

// The buffer holds either bytes read ahead from the file (Reading) or bytes
// written but not yet stored (Writing), never both, so a file never has two
// versions of a byte. The file is read and written at explicit offsets, so
// the system's own file position plays no part.
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

  size_t Read(char* out, size_t count) {
    if (mode_ != Mode::Reading) StartReading();
    const size_t buffered = length_ - cursor_;
    if (count <= buffered) {
      std::memcpy(out, buffer_.get() + cursor_, count);
      cursor_ += count;
      return count;
    }
    std::memcpy(out, buffer_.get() + cursor_, buffered);
    size_t done = buffered;
    cursor_ = length_;
    while (done < count) {
      const long long offset = start_ + static_cast<long long>(length_);
      const size_t wanted = count - done;
      if (wanted >= kBufferSize) {
        // Large reads go straight to the caller; copying them through the
        // buffer would only add a pass over the bytes.
        const size_t got = ReadAt(fd_, out + done, wanted, offset);
        done += got;
        start_ = offset + static_cast<long long>(got);
        length_ = 0;
        cursor_ = 0;
        break;
      }
      const size_t got = ReadAt(fd_, buffer_.get(), kBufferSize, offset);
      start_ = offset;
      length_ = got;
      cursor_ = std::min(got, wanted);
      std::memcpy(out + done, buffer_.get(), cursor_);
      done += cursor_;
      if (got < wanted) break;
    }
    return done;
  }

  size_t Write(const char* in, size_t count) {
    if (mode_ != Mode::Writing) StartWriting();
    if (count <= kBufferSize - length_) {
      std::memcpy(buffer_.get() + length_, in, count);
      length_ += count;
      GrowSize();
      return count;
    }
    if (!Flush()) return 0;
    if (count >= kBufferSize) {
      const size_t put = WriteAt(fd_, in, count, start_);
      start_ += static_cast<long long>(put);
      GrowSize();
      return put;
    }
    std::memcpy(buffer_.get(), in, count);
    length_ = count;
    GrowSize();
    return count;
  }

  int Seek(long long offset, int origin) {
    long long base = 0;
    switch (origin) {
      case kFromStart:
        break;
      case kFromPosition:
        base = Position();
        break;
      case kFromEnd:
        base = size_;
        break;
      default:
        return kSeekFailed;
    }
    // Both terms are at least 0 after the checks, so only an overflow past
    // the largest offset remains to be refused.
    if (offset < -base) return kSeekFailed;
    if (offset > 0 && base > std::numeric_limits<long long>::max() - offset) return kSeekFailed;
    const long long target = base + offset;
    if (mode_ == Mode::Reading && target >= start_ &&
        target <= start_ + static_cast<long long>(length_)) {
      // The cache seeks to where it stopped reading before every record;
      // inside the read-ahead that is only a move of the cursor.
      cursor_ = static_cast<size_t>(target - start_);
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
        return start_ + static_cast<long long>(cursor_);
      case Mode::Writing:
        return start_ + static_cast<long long>(length_);
    }
    return position_;
  }

  void GrowSize() { size_ = std::max(size_, start_ + static_cast<long long>(length_)); }

  // Stores the pending bytes and empties the buffer at the position after
  // them. Bytes that cannot be stored (a full disk) are lost; the write that
  // needed the room reports 0, and a read of them comes back short.
  [[nodiscard]] bool Flush() {
    const size_t put = WriteAt(fd_, buffer_.get(), length_, start_);
    const bool stored = put == length_;
    start_ += static_cast<long long>(length_);
    length_ = 0;
    return stored;
  }

  // Leaves either mode for Idle at the current position.
  void StopBuffering() {
    const long long position = Position();
    if (mode_ == Mode::Writing) (void)Flush();
    mode_ = Mode::Idle;
    position_ = position;
    start_ = 0;
    length_ = 0;
    cursor_ = 0;
  }

  void StartReading() {
    StopBuffering();
    mode_ = Mode::Reading;
    start_ = position_;
  }

  void StartWriting() {
    StopBuffering();
    mode_ = Mode::Writing;
    start_ = position_;
  }

  int fd_ = -1;
  std::string path_;
  std::unique_ptr<char[]> buffer_;
  Mode mode_ = Mode::Idle;
  // Idle: the position. Reading and Writing derive it from the buffer.
  long long position_ = 0;
  // The file offset of the buffer's first byte.
  long long start_ = 0;
  // Reading: bytes read ahead; Writing: bytes not yet stored.
  size_t length_ = 0;
  // Reading: the next byte to hand out.
  size_t cursor_ = 0;
  // The file's size including the bytes not yet stored; only this object
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
  if (!impl_->Valid() || buffer == nullptr) return 0;
  return impl_->Read(static_cast<char*>(buffer), count);
}

size_t LocalTempFile::write(const void* buffer, size_t count) {
  if (!impl_->Valid() || buffer == nullptr) return 0;
  return impl_->Write(static_cast<const char*>(buffer), count);
}

int LocalTempFile::seek(long long offset, int origin) {
  if (!impl_->Valid()) return kSeekFailed;
  return impl_->Seek(offset, origin);
}

}  // namespace DMTempFiles
