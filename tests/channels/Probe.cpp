// Uses one channel as a program with a window would, and tells what happened:  channelprobe CHANNEL SCENARIO [NUMBER]
//
//   echo BYTES   sends bytes of all values and compares what comes back
//   flood BYTES  sends to a device that may not read, in pieces of 1 MiB, and ends without waiting
//   watch MS     reads nothing for so long, then everything until the end of the connection
//   collect BYTES  reads so many over a line that is opened again and again, and looks at it once more when it is lost
//   leave        ends the channel at once
//   ports        prints the serial ports instead; CHANNEL is the folder where the system's files begin
//
// All but `flood` and `ports` also tell what every operation answers in the end. Prints one "NAME VALUE" for a line. No
// operation waits for the device, so the longest of all calls is among them.
#include "host/channel/ChannelErrors.h"
#include "host/channel/factory/ChannelFactory.h"
#include "host/channel/stream/SerialPorts.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string>
#include <thread>

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr std::chrono::seconds kPatience{40}; // for everything that should happen
constexpr milliseconds kPause{2};             // between two looks
constexpr std::size_t kPiece = 1 << 20;

steady_clock::duration g_longestCall{};

// Makes one call and measures it.
template <class Call>
auto Timed(Call call) {
  const auto start = steady_clock::now();
  auto result = call();
  g_longestCall = std::max(g_longestCall, steady_clock::now() - start);
  return result;
}

template <class Value>
void Print(const char* name, const Value& value) {
  std::cout << name << ' ' << value << std::endl;
}

void PrintTime(const char* name, steady_clock::duration time) {
  Print(name, std::chrono::duration_cast<milliseconds>(time).count());
}

std::string Pattern(std::size_t count) {
  std::string bytes(count, '\0');
  for (std::size_t i = 0; i < count; ++i) // it does not repeat with a buffer's size
    bytes[i] = static_cast<char>(i * 31 + i / 251);
  return bytes;
}

// Asks again and again until `happened`; prints what did not happen in time and ends the process.
template <class Question>
void WaitFor(const char* what, Question happened) {
  const auto end = steady_clock::now() + kPatience;
  while (!happened()) {
    if (steady_clock::now() > end) {
      Print("timeout", std::string("waiting for ") + what);
      std::_Exit(1);
    }
    std::this_thread::sleep_for(kPause);
  }
}

bool IsOpen(host::Channel& channel) {
  return Timed([&] { return channel.GetState(); }) == 1;
}

// Everything that is there; the code of the call that found no more.
std::int32_t ReceiveAll(host::Channel& channel, std::string& bytes) {
  char buffer[1024];
  std::uint64_t count = 0;
  std::int32_t code = 0;
  do {
    code = Timed([&] { return channel.Receive(buffer, sizeof buffer, &count); });
    bytes.append(buffer, code == 0 ? static_cast<std::size_t>(count) : 0);
  } while (code == 0 && count != 0);
  return code;
}

std::int32_t Transmit(host::Channel& channel, const std::string& bytes) {
  std::uint64_t written = 0;
  return Timed([&] { return channel.Transmit(bytes.data(), bytes.size(), &written); });
}

std::string TextOf(host::Channel& channel, std::int32_t code) {
  return channel.GetInfoString(OND_INFO_ERROR, code);
}

// What each operation answers, and why it does when the channel is closed.
void PrintCodes(host::Channel& channel) {
  std::uint64_t count = 0;
  char byte = 0;
  const std::int32_t codes[] = {
      Timed([&] { return channel.Receive(&byte, 1, &count); }),
      Timed([&] { return channel.Transmit("x", 1, &count); }),
      Timed([&] { return channel.TransmitFileFromMemory("x", 1, 1, 1, 0, nullptr, nullptr, 1, 40); }),
      Timed([&] { return channel.TransmitFile("none", 1, 1, 0, nullptr, nullptr, 1, 40); }),
      Timed([&] { return channel.ReadDirectory(); }),
      Timed([&] { return channel.DeleteDeviceFile(1); }),
      Timed([&] { return channel.FormatDevice(0); }),
  };
  std::string words;
  for (const std::int32_t code : codes)
    words += (words.empty() ? "" : " ") + std::to_string(code);
  Print("codes", words);
  Print("text", TextOf(channel, host::kNotOpen));
}

void WaitForConnection(host::Channel& channel) {
  WaitFor("the connection", [&] { return !channel.IsConnecting(); });
}

void Echo(host::Channel& channel, std::size_t size) {
  WaitForConnection(channel);
  const std::string sent = Pattern(size);
  std::string received;
  std::size_t position = 0;
  WaitFor("all bytes to come back", [&] {
    if (position < size && Transmit(channel, sent.substr(position, 65536)) == 0)
      position = std::min(position + 65536, size);
    ReceiveAll(channel, received);
    return received.size() >= size || !IsOpen(channel);
  });
  const auto difference = std::mismatch(sent.begin(), sent.end(), received.begin(), received.end());
  Print("received", received.size());
  Print("same", difference.first - sent.begin());
  PrintCodes(channel);
}

void Flood(host::Channel& channel, std::size_t size) {
  WaitForConnection(channel);
  const std::string piece(kPiece, 'x');
  std::size_t taken = 0;
  std::int32_t code = 0;
  while (taken < size && code == 0) {
    code = Transmit(channel, piece);
    taken += code == 0 ? kPiece : 0;
  }
  Print("taken", taken);
  Print("answer", TextOf(channel, code));
}

void Watch(host::Channel& channel, milliseconds pause) {
  std::string received;
  bool wasOpen = false;
  std::this_thread::sleep_for(pause);
  WaitFor("the end of the connection", [&] {
    wasOpen = IsOpen(channel) || wasOpen;
    return ReceiveAll(channel, received) != 0 && !channel.IsConnecting();
  });
  Print("was-open", wasOpen ? "yes" : "no");
  Print("received", received.size());
  Print("same", received == Pattern(received.size()) ? "yes" : "no");
  PrintCodes(channel);
}

void Collect(host::Channel& channel, std::size_t size) {
  std::string received;
  WaitFor("all bytes", [&] { return ReceiveAll(channel, received) == 0 && received.size() >= size; });
  WaitFor("the line to be lost", [&] { return !IsOpen(channel); });
  Print("received", received.size());
  PrintCodes(channel);
}

} // namespace

int main(int argc, char** argv) {
  if (argc < 3)
    return 2;
  host::ChannelOptions options;
  options.text = argv[1];
  const std::string scenario = argv[2];
  if (scenario == "ports") {
    std::cout << host::SerialPortLines(host::ListSerialPorts(argv[1]));
    return 0;
  }
  const std::size_t number = argc > 3 ? std::strtoull(argv[3], nullptr, 10) : 0;

  auto made = Timed([&] { return host::MakeChannel(options); });
  if (!made) {
    Print("error", made.error().text);
    return 1;
  }
  std::unique_ptr<host::Channel> channel = std::move(*made);
  if (scenario == "echo")
    Echo(*channel, number);
  else if (scenario == "flood")
    Flood(*channel, number);
  else if (scenario == "watch")
    Watch(*channel, milliseconds(number));
  else if (scenario == "collect")
    Collect(*channel, number);
  else
    PrintCodes(*channel);
  PrintTime("longest-call", g_longestCall);
  const auto start = steady_clock::now();
  channel.reset();
  PrintTime("end", steady_clock::now() - start);
  return 0;
}
