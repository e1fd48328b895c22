// This PC on the network, as an audit record names it.
#pragma once

#include <string>

namespace kaunter {

struct Host {
  std::string name;
  std::string address;  // first IPv4 address that is not the loopback; 127.0.0.1 without a network
};

// Never throws: what the system does not tell is "unknown".
Host ThisHost();
std::string ThisHostName();  // without a look at the network
// Another name for this PC: machines that several persons share would else pass for one. Before the
// first session, and never again.
void NameThisHost(std::string name);

// As the system tells them, whatever name was given.
std::string MachineName();
std::string MachineAddress();

}  // namespace kaunter
