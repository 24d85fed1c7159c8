#include "support/run_tool.h"

#include <sys/wait.h>
#include <unistd.h>

#include <regex>
#include <stdexcept>

namespace bgrtest {

ToolRun RunTool(const std::string& binary, const std::string& dir, const std::vector<std::string>& args) {
  int pipeFd[2];
  if (pipe(pipeFd) != 0) throw std::runtime_error("pipe failed");
  pid_t pid = fork();
  if (pid == 0) {
    dup2(pipeFd[1], 1);
    close(pipeFd[0]);
    close(pipeFd[1]);
    if (chdir(dir.c_str()) != 0) _exit(127);
    std::vector<char*> argv;
    std::string name = "bgrtool";
    argv.push_back(name.data());
    std::vector<std::string> copies = args;
    for (std::string& a : copies) argv.push_back(a.data());
    argv.push_back(nullptr);
    execv(binary.c_str(), argv.data());
    _exit(127);
  }
  close(pipeFd[1]);
  ToolRun run;
  char buffer[65536];
  ssize_t n;
  while ((n = read(pipeFd[0], buffer, sizeof buffer)) > 0) run.out.append(buffer, static_cast<std::size_t>(n));
  close(pipeFd[0]);
  int status = 0;
  waitpid(pid, &status, 0);
  run.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
  return run;
}

std::string Normalise(const std::string& text) {
  static const std::regex time(R"(TIME= [0-9]+\.[0-9]{3} sec)");
  std::string out = std::regex_replace(text, std::regex(R"((^|\n)( ?)[^ \n][^\n]*, v1\.03\n)"), "$1$2<banner>\n");
  return std::regex_replace(out, time, "TIME= <t> sec");
}

}  // namespace bgrtest
