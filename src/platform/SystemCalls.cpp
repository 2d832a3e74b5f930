#include "platform/SystemCalls.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sweeply {

SystemCalls& SystemCalls::plain() {
    static SystemCalls calls;
    return calls;
}

bool SystemCalls::mayCall(const char* call) {
    const int error = before(call);
    if (error != 0)
        errno = error;
    return error == 0;
}

int SystemCalls::create(int folder, const char* name, int flags, mode_t mode) {
    return mayCall("create") ? ::openat(folder, name, flags | O_CREAT | O_EXCL | O_CLOEXEC, mode) : -1;
}

int SystemCalls::mkdirat(int folder, const char* name, mode_t mode) {
    return mayCall("mkdirat") ? ::mkdirat(folder, name, mode) : -1;
}

int SystemCalls::renameat2(int from, const char* name, int to, const char* newName) {
    return mayCall("renameat2") ? ::renameat2(from, name, to, newName, RENAME_NOREPLACE) : -1;
}

int SystemCalls::renameat(int from, const char* name, int to, const char* newName) {
    return mayCall("renameat") ? ::renameat(from, name, to, newName) : -1;
}

int SystemCalls::linkat(int from, const char* name, int to, const char* newName) {
    return mayCall("linkat") ? ::linkat(from, name, to, newName, 0) : -1;
}

int SystemCalls::unlinkat(int folder, const char* name, int flags) {
    return mayCall("unlinkat") ? ::unlinkat(folder, name, flags) : -1;
}

ssize_t SystemCalls::write(int file, const void* bytes, std::size_t size) {
    return mayCall("write") ? ::write(file, bytes, size) : -1;
}

int SystemCalls::ftruncate(int file, off_t size) { return mayCall("ftruncate") ? ::ftruncate(file, size) : -1; }

int SystemCalls::reserve(int file, std::size_t size) {
    return mayCall("fallocate") ? ::fallocate(file, FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(size)) : -1;
}

int SystemCalls::fsync(int file) { return mayCall("fsync") ? ::fsync(file) : -1; }

int SystemCalls::fdatasync(int file) { return mayCall("fdatasync") ? ::fdatasync(file) : -1; }

int SystemCalls::fchown(int file, uid_t owner, gid_t group) {
    return mayCall("fchown") ? ::fchown(file, owner, group) : -1;
}

int SystemCalls::fchmod(int file, mode_t mode) { return mayCall("fchmod") ? ::fchmod(file, mode) : -1; }

} // namespace sweeply
