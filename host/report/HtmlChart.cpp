#include "host/report/HtmlChart.h"

#include "host/report/ReportText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace host {
namespace {

double NumberOf(const std::string& text) {
  double number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

// A coordinate, in tenths of a pixel at most.
std::string At(double coordinate) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", coordinate);
  std::string number = text;
  return number.ends_with(".0") ? number.substr(0, number.size() - 2) : number;
}

std::string Rectangle(const char* look, double x, double y, double width, double height) {
  return std::string("<rect class=\"") + look + "\" x=\"" + At(x) + "\" y=\"" + At(y) + "\" width=\"" + At(width) +
         "\" height=\"" + At(height) + "\"/>";
}

std::string Opening(double width, double height, const std::string& title) {
  return "<svg role=\"img\" viewBox=\"0 0 " + At(width) + " " + At(height) + "\" width=\"" + At(width) +
         "\" height=\"" + At(height) + "\"><title>" + Escaped(title) + "</title>";
}

// The part of the numbers that is drawn.
struct Axis {
  double begin;
  double end;
  double PartOf(double value) const { return (value - begin) / (end - begin); }
};

// The limits take the middle half; where one is missing, the drawn part reaches as far on its side.
Axis AxisOf(const Measurement& measurement, double value) {
  const bool hasLow = !measurement.low.empty();
  const bool hasHigh = !measurement.high.empty();
  const double low = NumberOf(hasLow ? measurement.low : measurement.high);
  const double high = NumberOf(hasHigh ? measurement.high : measurement.low);
  double room = hasLow && hasHigh ? (high - low) / 2 : 1.25 * std::abs(value - low);
  if (room <= 0)
    room = low != 0 ? std::abs(low) / 4 : 1;
  return {low - room, high + room};
}

constexpr int kColumns = 500;
constexpr double kColumnWidth = 2;
constexpr double kChartWidth = kColumns * kColumnWidth;
constexpr double kLaneHeight = 44;
constexpr double kMiddle = kLaneHeight + 2;
constexpr double kChartHeight = 2 * kMiddle + 18;

struct Column {
  std::uint64_t bytes = 0;
  bool used = false;
  bool failed = false;
};
using Lane = std::array<Column, kColumns>;

// Columns of both directions: to the device, from the device.
std::array<Lane, 2> LanesOf(const ScriptRecord& script) {
  std::array<Lane, 2> lanes{};
  const double whole = static_cast<double>(std::max<std::int64_t>(script.took.count(), 1));
  for (std::size_t i = 0; i < script.traffic.Size(); ++i) {
    const TrafficEntry& entry = script.traffic[i];
    const int place = static_cast<int>(static_cast<double>(entry.at.count()) / whole * kColumns);
    Column& column = lanes[entry.toDevice ? 0 : 1][static_cast<std::size_t>(std::clamp(place, 0, kColumns - 1))];
    column.used = true;
    column.bytes += entry.bytes;
    column.failed |= entry.answer != 0;
  }
  return lanes;
}

// One path of upright lines, as high as the logarithm of their bytes; a cross where something failed.
std::string DrawLane(const Lane& lane, const char* look, double direction, double largest) {
  std::string lines;
  std::string failures;
  for (int i = 0; i < kColumns; ++i) {
    const Column& column = lane[static_cast<std::size_t>(i)];
    const double x = (i + 0.5) * kColumnWidth;
    if (column.used) {
      const double part = std::log1p(static_cast<double>(column.bytes)) / std::log1p(largest);
      lines += "M" + At(x) + " " + At(kMiddle) + "v" + At(direction * (3 + part * (kLaneHeight - 3)));
    }
    if (column.failed)
      failures += "M" + At(x - 4) + " " + At(kMiddle + direction * 20 - 4) + "l8 8m0 -8l-8 8";
  }
  std::string text = std::string("<path class=\"") + look + "\" stroke-width=\"1.6\" d=\"" + lines + "\"/>";
  if (!failures.empty())
    text += "<path style=\"stroke:var(--bad);fill:none\" stroke-width=\"2\" d=\"" + failures + "\"/>";
  return text;
}

// Ten at most, at round numbers.
std::string DrawTicks(double seconds) {
  double step = std::pow(10, std::floor(std::log10(std::max(seconds, 1e-6) / 10)));
  for (const double factor : {2.0, 2.5, 2.0}) {
    if (seconds / step > 10)
      step *= factor;
  }
  std::string text;
  for (int i = 0; i * step <= seconds; ++i) {
    char label[32];
    std::snprintf(label, sizeof label, "%g s", i * step);
    const double x = i * step / std::max(seconds, 1e-6) * kChartWidth;
    text += "<path class=\"axis\" d=\"M" + At(x) + " " + At(2 * kMiddle) + "v4\"/>";
    if (x < kChartWidth - 40)
      text += "<text x=\"" + At(x + 3) + "\" y=\"" + At(kChartHeight - 2) + "\">" + label + "</text>";
  }
  return text;
}

} // namespace

std::string MeasurementChart(const Measurement& measurement) {
  constexpr double kWidth = 220;
  constexpr double kHeight = 18;
  const double value = NumberOf(measurement.value);
  const Axis axis = AxisOf(measurement, value);
  const auto place = [&](double number) { return std::clamp(axis.PartOf(number), 0.0, 1.0) * kWidth; };
  const double from = measurement.low.empty() ? 0 : place(NumberOf(measurement.low));
  const double to = measurement.high.empty() ? kWidth : place(NumberOf(measurement.high));
  const double x = std::clamp(place(value), 5.0, kWidth - 5);
  const bool isOutside = axis.PartOf(value) < 0 || axis.PartOf(value) > 1;
  std::string text = Opening(kWidth, kHeight, ValueOf(measurement) + ", limits " + LimitsOf(measurement));
  text += Rectangle("limits", from, 4, std::max(to - from, 1.0), 10);
  text += "<path class=\"axis\" d=\"M0 9h" + At(kWidth) + "\"/>";
  // What is farther away than the picture reaches is an arrow at its end.
  const std::string point = isOutside ? (axis.PartOf(value) < 0 ? "l8 -6v12z" : "l-8 -6v12z") : "m-5 0l5 -7 5 7 -5 7z";
  text += std::string("<path class=\"") + (measurement.passed ? "mark-good" : "mark-bad") + "\" d=\"M" + At(x) + " 9" +
          point + "\"/>";
  return text + "</svg>";
}

std::string TrafficChart(const ScriptRecord& script) {
  const auto lanes = LanesOf(script);
  double largest = 1;
  for (const Lane& lane : lanes) {
    for (const Column& column : lane)
      largest = std::max(largest, static_cast<double>(column.bytes));
  }
  const double whole = static_cast<double>(std::max<std::int64_t>(script.took.count(), 1));
  std::string text = Opening(kChartWidth, kChartHeight, "Traffic over the time of the script");
  for (const TimedAnswer& question : script.questions)
    text += Rectangle("asked", static_cast<double>(question.at.count()) / whole * kChartWidth, 0,
                      std::max(static_cast<double>(question.took.count()) / whole * kChartWidth, 1.0), 2 * kMiddle);
  text += DrawLane(lanes[0], "out", -1, largest) + DrawLane(lanes[1], "in", 1, largest);
  text += "<path class=\"axis\" d=\"M0 " + At(kMiddle) + "h" + At(kChartWidth) + "\"/>";
  return text + DrawTicks(whole / 1e6) + "</svg>";
}

} // namespace host
