#include "tests/platform/support/postgres_server.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <grp.h>
#include <netinet/in.h>
#include <pwd.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "tests/support/odbc_driver.h"

namespace kaunter::testing {
namespace {
namespace fs = std::filesystem;

std::string FindPrograms() {
  std::vector<std::string> found;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator("/usr/lib/postgresql", error)) {
    if (fs::exists(entry.path() / "bin/postgres", error)) {
      found.push_back((entry.path() / "bin").string());
    }
  }
  if (found.empty()) {
    throw std::runtime_error(
        "No PostgreSQL server is installed (package postgresql). `script/setup test` installs it.");
  }
  return *std::max_element(found.begin(), found.end());
}

int FreePort() {
  const int socket_ = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  const bool bound = bind(socket_, reinterpret_cast<sockaddr*>(&address), length) == 0 &&
                     getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &length) == 0;
  close(socket_);
  if (!bound) throw std::runtime_error("no free port on loopback");
  return ntohs(address.sin_port);
}

// Whoever runs the server when the tests run as root; null otherwise.
const passwd* OtherUser() {
  if (geteuid() != 0) return nullptr;
  for (const char* name : {"postgres", "nobody"}) {
    if (const passwd* user = getpwnam(name)) return user;
  }
  throw std::runtime_error("PostgreSQL does not run as root, and no other user is known.");
}

}  // namespace

PostgresServer::PostgresServer() : programs_(FindPrograms()), port_(FreePort()) {
  if (const passwd* user = OtherUser()) {
    if (chown(folder_.path().c_str(), user->pw_uid, user->pw_gid) != 0) {
      throw std::runtime_error("the server's folder cannot be given to another user");
    }
  }
  if (!RunToEnd({programs_ + "/initdb", "-D", folder_.File("data"), "-U", "kaunter", "-A", "trust",
                 "-E", "UTF8", "--locale=C", "--no-sync", "--no-instructions"})) {
    throw std::runtime_error("initdb failed: " + LogEnd());
  }
  Start();
}

PostgresServer::~PostgresServer() { Stop(); }

void PostgresServer::Start() {
  if (server_ > 0) return;
  server_ = Spawn({programs_ + "/postgres", "-D", folder_.File("data"), "-p", std::to_string(port_),
                   "-k", folder_.path().string(), "-c", "listen_addresses=127.0.0.1", "-c",
                   "fsync=off", "-c", "max_connections=40"});
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (!RunToEnd({programs_ + "/pg_isready", "-q", "-h", "127.0.0.1", "-p", std::to_string(port_),
                    "-d", "postgres"})) {
    const bool ended = waitpid(server_, nullptr, WNOHANG) == server_;
    if (ended) server_ = -1;
    if (ended || std::chrono::steady_clock::now() > deadline) {
      throw std::runtime_error("PostgreSQL does not start: " + LogEnd());
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
}

void PostgresServer::Stop() {
  if (server_ <= 0) return;
  kill(server_, SIGQUIT);  // immediate: connections are dropped where they stand
  waitpid(server_, nullptr, 0);
  server_ = -1;
}

std::string PostgresServer::OdbcText(const std::string& database) const {
  return "Driver=" + PostgresDriver() + ";Server=127.0.0.1;Port=" + std::to_string(port_) +
         ";UID=kaunter;Database=" + database;
}

pid_t PostgresServer::Spawn(const std::vector<std::string>& command) const {
  const passwd* user = OtherUser();
  const std::string log = folder_.File("log");
  std::vector<char*> arguments;
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("no child process");
  if (child > 0) return child;
  if (user != nullptr &&
      (setgroups(0, nullptr) != 0 || setgid(user->pw_gid) != 0 || setuid(user->pw_uid) != 0)) {
    _exit(126);
  }
  prctl(PR_SET_PDEATHSIG, SIGQUIT);
  const int out = open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
  const int in = open("/dev/null", O_RDONLY);
  dup2(in, 0);
  dup2(out, 1);
  dup2(out, 2);
  if (chdir("/") != 0) _exit(126);
  execv(arguments[0], arguments.data());
  _exit(127);
}

bool PostgresServer::RunToEnd(const std::vector<std::string>& command) const {
  int status = 0;
  return waitpid(Spawn(command), &status, 0) > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::string PostgresServer::LogEnd() const {
  std::ifstream file(folder_.File("log"));
  std::stringstream all;
  all << file.rdbuf();
  const std::string text = all.str();
  return text.substr(text.size() > 2000 ? text.size() - 2000 : 0);
}

}  // namespace kaunter::testing
