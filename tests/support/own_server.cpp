#include "tests/support/own_server.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velmoria::test {

OwnServer::OwnServer(const std::string& kind) {
  int orders[2];
  int answers[2];
  if (pipe2(orders, O_CLOEXEC) != 0 || pipe2(answers, O_CLOEXEC) != 0) return;
  const std::string script = std::string(VELMORIA_TESTS_DIR) + "/../scripts/lib/serve";
  process_ = fork();
  if (process_ == 0) {
    dup2(orders[0], STDIN_FILENO);
    dup2(answers[1], STDOUT_FILENO);
    execl(script.c_str(), script.c_str(), kind.c_str(), nullptr);
    _exit(127);
  }
  close(orders[0]);
  close(answers[1]);
  orders_ = orders[1];
  answers_ = answers[0];
  connectString_ = Answer();
}

OwnServer::~OwnServer() {
  close(orders_);
  close(answers_);
  int status = 0;
  if (process_ > 0) waitpid(process_, &status, 0);
}

std::string OwnServer::Ask(const std::string& order) {
  const std::string line = order + "\n";
  return write(orders_, line.data(), line.size()) == static_cast<ssize_t>(line.size()) ? Answer() : std::string();
}

std::string OwnServer::Answer() {
  std::string line;
  for (char letter = 0; read(answers_, &letter, 1) == 1 && letter != '\n';) line += letter;
  return line;
}

}  // namespace velmoria::test
