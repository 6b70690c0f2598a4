// Runs every script that standard input holds, each ended by a zero byte, and prints what each prints in the same way.
#include "host/channel/factory/ChannelFactory.h"
#include "scriptrt/run/ScriptSession.h"

#include <iostream>
#include <string>

int main() {
  const auto device = host::MakeChannel({});
  int owner = 0;
  ScriptSession session(&owner);
  session.SetChannel(device->get());
  const auto print = [](void*, const char* text) { std::cout << text; };
  for (std::string script; std::getline(std::cin, script, '\0');) {
    session.ExecuteScript(script, nullptr, print, nullptr);
    std::cout << '\0';
  }
}
