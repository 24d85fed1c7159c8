/* Loaded with LD_PRELOAD by the end-to-end tests: BGRTOOL_FAIL_CALL="rename:N"
   (or "fsync:N") makes the N-th call of that function fail with EIO, as a
   failing disk would. Writes are failed by a file-size limit instead, since the
   C library's streams don't write through the public write(). */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static int ShouldFail(const char* name) {
  static int calls;
  const char* plan = getenv("BGRTOOL_FAIL_CALL");
  size_t n = strlen(name);
  if (!plan || strncmp(plan, name, n) != 0 || plan[n] != ':') return 0;
  return ++calls == atoi(plan + n + 1);
}

int rename(const char* from, const char* to) {
  static int (*real)(const char*, const char*);
  if (!real) real = (int (*)(const char*, const char*))dlsym(RTLD_NEXT, "rename");
  if (ShouldFail("rename")) {
    errno = EIO;
    return -1;
  }
  return real(from, to);
}

int fsync(int fd) {
  static int (*real)(int);
  if (!real) real = (int (*)(int))dlsym(RTLD_NEXT, "fsync");
  if (ShouldFail("fsync")) {
    errno = EIO;
    return -1;
  }
  return real(fd);
}
