#include "support/run_tool.h"

#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace bgrtest {

namespace {

// BGRTOOL_TEST_WRAPPER (say "valgrind -q --error-exitcode=99") runs every
// start of the binary under a checker; 99 then means the checker found an error.
std::vector<std::string> Wrapper() {
  std::vector<std::string> words;
  if (const char* text = std::getenv("BGRTOOL_TEST_WRAPPER")) {
    std::istringstream in(text);
    for (std::string w; in >> w;) words.push_back(w);
  }
  return words;
}

}  // namespace

ToolRun RunTool(const std::string& built, const std::string& dir, const std::vector<std::string>& args,
                long fileSizeLimit, const std::string& failCall) {
  std::vector<std::string> wrapper = Wrapper();
  // BGRTOOL_TEST_BINARY and BGRKIT_TEST_BINARY run the tables against other
  // builds of the programs (the Windows ones under Wine, with BGRTOOL_TEST_WRAPPER=wine)
  bool kit = built.find("bgrkit") != std::string::npos;
  const char* other = std::getenv(kit ? "BGRKIT_TEST_BINARY" : "BGRTOOL_TEST_BINARY");
  std::string binary = other ? other : built;
  if (!wrapper.empty()) {
    // found as a bare name on the PATH, so that its report lands in the run's folder
    symlink(binary.c_str(), (dir + "/bgrtool").c_str());
  }
  int pipeFd[2], errFd[2];
  if (pipe(pipeFd) != 0 || pipe(errFd) != 0) throw std::runtime_error("pipe failed");
  pid_t pid = fork();
  if (pid == 0) {
    dup2(pipeFd[1], 1);
    dup2(errFd[1], 2);
    close(pipeFd[0]);
    close(pipeFd[1]);
    close(errFd[0]);
    close(errFd[1]);
    if (chdir(dir.c_str()) != 0) _exit(127);
    if (!failCall.empty()) {
      setenv("LD_PRELOAD", BGRTOOL_FAULT_SHIM, 1);
      setenv("BGRTOOL_FAIL_CALL", failCall.c_str(), 1);
      setenv("ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=1", 1);
    }
    if (fileSizeLimit >= 0) {
      std::signal(SIGXFSZ, SIG_IGN);  // a write past the limit fails instead of ending the process
      rlimit limit{static_cast<rlim_t>(fileSizeLimit), static_cast<rlim_t>(fileSizeLimit)};
      setrlimit(RLIMIT_FSIZE, &limit);
    }
    std::vector<std::string> words = wrapper;
    words.push_back("bgrtool");
    words.insert(words.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (std::string& w : words) argv.push_back(w.data());
    argv.push_back(nullptr);
    if (wrapper.empty()) {
      execv(binary.c_str(), argv.data());
    } else {
      std::string path = dir + ":" + (std::getenv("PATH") ? std::getenv("PATH") : "");
      setenv("PATH", path.c_str(), 1);
      execvp(argv[0], argv.data());
    }
    _exit(127);
  }
  close(pipeFd[1]);
  close(errFd[1]);
  ToolRun run;
  // both pipes at once, so that neither can fill up and stall the child; once
  // the child has ended, what is left is read and the pipes are let go, since
  // helpers that a wrapper starts (Wine's) may hold them open for good
  pollfd fds[2] = {{pipeFd[0], POLLIN, 0}, {errFd[0], POLLIN, 0}};
  std::string* sinks[2] = {&run.out, &run.err};
  int status = 0;
  bool ended = false;
  for (int open = 2; open > 0;) {
    int ready = poll(fds, 2, ended ? 0 : 100);
    if (ready < 0) break;
    if (ready == 0) {
      if (ended) break;
      ended = waitpid(pid, &status, WNOHANG) == pid;
      continue;
    }
    for (int i = 0; i < 2; ++i) {
      if (fds[i].fd < 0 || !(fds[i].revents & (POLLIN | POLLHUP | POLLERR))) continue;
      char buffer[65536];
      ssize_t n = read(fds[i].fd, buffer, sizeof buffer);
      if (n > 0) {
        sinks[i]->append(buffer, static_cast<std::size_t>(n));
      } else {
        close(fds[i].fd);
        fds[i].fd = -1;
        --open;
      }
    }
  }
  for (pollfd& f : fds) {
    if (f.fd >= 0) close(f.fd);
  }
  if (!ended) waitpid(pid, &status, 0);
  run.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
  if (!wrapper.empty()) {
    EXPECT_NE(run.exitStatus, 99) << "the checker found an error running bgrtool in " << dir << ":\n" << run.err;
    unlink((dir + "/bgrtool").c_str());
  }
  return run;
}

std::string Normalise(const std::string& text) {
  static const std::regex time(R"(TIME= [0-9]+\.[0-9]{3} sec)");
  std::string out = std::regex_replace(text, std::regex(R"((^|\n)( ?)[^ \n][^\n]*, v1\.03\n)"), "$1$2<banner>\n");
  return std::regex_replace(out, time, "TIME= <t> sec");
}

}  // namespace bgrtest
