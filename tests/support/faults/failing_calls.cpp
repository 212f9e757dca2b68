// To be loaded before the other libraries of a program: fails some of its system calls, or ends it
// there. What the environment variable OMBE_FAULT says: the call, which one of them (from 1), the
// error number (-1: half of the bytes are taken, -2: the process ends), and 1 when all that follow
// fail as well. The file OMBE_FAULT_MARK is made when it happens. Messages on standard error pass.
#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int kHalf = -1;
constexpr int kEnd = -2;

struct Fault {
  Fault() {
    const char* text = std::getenv("OMBE_FAULT");
    if (text != nullptr) std::sscanf(text, "%15s %d %d %d", call, &first, &error, &lasts);
  }

  char call[16] = "";
  int first = 0;
  int error = 0;
  int lasts = 0;
  std::atomic<int> count{0};
};

/// Whether this call is to fail.
bool strikes(const char* call) {
  static Fault fault;
  if (std::strcmp(call, fault.call) != 0) return false;
  const int number = ++fault.count;
  if (number < fault.first || (number > fault.first && fault.lasts == 0)) return false;
  ::syscall(SYS_mknodat, AT_FDCWD, std::getenv("OMBE_FAULT_MARK"), 0100600, 0);
  if (fault.error == kEnd) ::_exit(99);
  errno = fault.error;
  return true;
}

template <typename Result, typename... Arguments>
Result really(const char* name, Arguments... arguments) {
  return reinterpret_cast<Result (*)(Arguments...)>(::dlsym(RTLD_NEXT, name))(arguments...);
}

template <typename Result, typename... Arguments>
Result callOrFail(const char* call, const char* name, Arguments... arguments) {
  return strikes(call) ? static_cast<Result>(-1) : really<Result>(name, arguments...);
}

template <typename Bytes>
ssize_t transfer(const char* call, int file, Bytes bytes, std::size_t count) {
  if (file == STDERR_FILENO || !strikes(call)) return really<ssize_t>(call, file, bytes, count);
  return errno == kHalf ? really<ssize_t>(call, file, bytes, (count + 1) / 2) : -1;
}

}  // namespace

#define OMBE_INSTEAD_OF(name) __asm__(name) __attribute__((visibility("default")))
extern "C" {
int failOpen(const char* path, int flags, mode_t mode) OMBE_INSTEAD_OF("open");
int failOpen64(const char* path, int flags, mode_t mode) OMBE_INSTEAD_OF("open64");
int failOpenChecked(const char* path, int flags) OMBE_INSTEAD_OF("__open_2");
int failOpen64Checked(const char* path, int flags) OMBE_INSTEAD_OF("__open64_2");
ssize_t failRead(int file, void* to, std::size_t count) OMBE_INSTEAD_OF("read");
ssize_t failReadChecked(int file, void* to, std::size_t, std::size_t) OMBE_INSTEAD_OF("__read_chk");
ssize_t failWrite(int file, const void* from, std::size_t count) OMBE_INSTEAD_OF("write");
off_t failSeek(int file, off_t at, int by) OMBE_INSTEAD_OF("lseek");
off64_t failSeek64(int file, off64_t at, int by) OMBE_INSTEAD_OF("lseek64");
int failSync(int file) OMBE_INSTEAD_OF("fsync");
int failRename(const char* from, const char* to) OMBE_INSTEAD_OF("rename");
int failLink(int, const char*, int, const char*, int) OMBE_INSTEAD_OF("linkat");
int failClose(int file) OMBE_INSTEAD_OF("close");
int failThread(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*)
    OMBE_INSTEAD_OF("pthread_create");

int failOpen(const char* path, int flags, mode_t mode) {
  return callOrFail<int>("open", "open", path, flags, mode);
}
int failOpen64(const char* path, int flags, mode_t mode) {
  return callOrFail<int>("open", "open64", path, flags, mode);
}
int failOpenChecked(const char* path, int flags) {
  return callOrFail<int>("open", "open", path, flags, 0);
}
int failOpen64Checked(const char* path, int flags) {
  return callOrFail<int>("open", "open64", path, flags, 0);
}
ssize_t failRead(int file, void* to, std::size_t count) {
  return transfer("read", file, to, count);
}
ssize_t failReadChecked(int file, void* to, std::size_t count, std::size_t /*room*/) {
  return transfer("read", file, to, count);
}
ssize_t failWrite(int file, const void* from, std::size_t count) {
  return transfer("write", file, from, count);
}
off_t failSeek(int file, off_t at, int by) {
  return callOrFail<off_t>("lseek", "lseek", file, at, by);
}
off64_t failSeek64(int file, off64_t at, int by) {
  return callOrFail<off64_t>("lseek", "lseek64", file, at, by);
}
int failSync(int file) { return callOrFail<int>("fsync", "fsync", file); }
int failRename(const char* from, const char* to) {
  return callOrFail<int>("rename", "rename", from, to);
}
int failLink(int from, const char* path, int to, const char* name, int flags) {
  return callOrFail<int>("link", "linkat", from, path, to, name, flags);
}
/// The descriptor is free afterwards, as it is on Linux whatever close says.
int failClose(int file) {
  const bool fails = strikes("close");
  const int error = errno;
  const int result = really<int>("close", file);
  if (fails) errno = error;
  return fails ? -1 : result;
}
int failThread(pthread_t* thread, const pthread_attr_t* kind, void* (*run)(void*), void* with) {
  return strikes("clone") ? errno : really<int>("pthread_create", thread, kind, run, with);
}
}
