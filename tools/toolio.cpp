#include "toolio.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>

namespace dmtool {

XmlSession::XmlSession() { DmExtension::DMXMLWrapper::startup(false); }

XmlSession::~XmlSession() { DmExtension::DMXMLWrapper::shutdown(false); }

StdoutToStderr::StdoutToStderr(bool discard) : saved_(-1) {
  std::cout.flush();
  std::fflush(stdout);
  saved_ = dup(STDOUT_FILENO);
  if (saved_ < 0) return;
  const int target = discard ? open("/dev/null", O_WRONLY) : STDERR_FILENO;
  if (target >= 0) dup2(target, STDOUT_FILENO);
  if (discard && target >= 0) close(target);
}

StdoutToStderr::~StdoutToStderr() {
  std::fflush(stdout);
  if (saved_ >= 0) {
    dup2(saved_, STDOUT_FILENO);
    close(saved_);
  }
}

bool ReadFile(const std::string& path, std::string& text) {
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    std::cerr << "dmtool: cannot open " << path << ": " << std::strerror(errno) << '\n';
    return false;
  }
  std::ostringstream buffer;
  buffer << in.rdbuf();
  if (in.bad()) {
    std::cerr << "dmtool: cannot read " << path << '\n';
    return false;
  }
  text = std::move(buffer).str();
  return true;
}

bool WriteOutput(const std::string& path, const std::string& text) {
  std::size_t size = text.size();
  while (size > 0 && text[size - 1] == '\0') --size;
  if (path.empty() || path == "-") {
    std::cout.write(text.data(), static_cast<std::streamsize>(size));
    if (size > 0 && text[size - 1] != '\n') std::cout << '\n';
    std::cout.flush();
    return static_cast<bool>(std::cout);
  }
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  if (out) {
    out.write(text.data(), static_cast<std::streamsize>(size));
    if (size > 0 && text[size - 1] != '\n') out << '\n';
    out.close();
  }
  if (!out) {
    std::cerr << "dmtool: cannot write " << path << ": " << std::strerror(errno) << '\n';
    return false;
  }
  return true;
}

LoadResult LoadMetaData(const std::string& path, std::unique_ptr<DMMetaData>& metadata) {
  std::string text;
  if (!ReadFile(path, text)) return LoadResult::kUnreadable;
  {
    StdoutToStderr guard;
    metadata = std::make_unique<DMMetaData>(text, nullptr);
  }
  if (metadata->FieldCount() == 0) {
    std::cerr << "dmtool: " << path << ": the library rejected the document; run `dmtool check "
              << path << "` to find the part at fault\n";
    return LoadResult::kRejected;
  }
  return LoadResult::kLoaded;
}

int ExitCodeOf(LoadResult result) {
  switch (result) {
    case LoadResult::kLoaded:
      return kExitOk;
    case LoadResult::kUnreadable:
      return kExitUsage;
    case LoadResult::kRejected:
      return kExitRejected;
  }
  return kExitRejected;
}

}  // namespace dmtool
