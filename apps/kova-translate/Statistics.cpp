#include "apps/kova-translate/Statistics.h"

#include "apps/kova-translate/Text.h"
#include "kovabase/io/KOVAStreamFormatter.h"
#include "kovabase/io/KOVAStringOutputStream.h"

#include <cstdio>

namespace kova::translate {

namespace {

std::string toShortText(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", value);
  return text;
}

void writePoint(KOVAStreamFormatter& text, const translators::Point& point) {
  text << '(' << toShortText(point.x).c_str() << ", " << toShortText(point.y).c_str() << ", "
       << toShortText(point.z).c_str() << ')';
}

void writeCount(KOVAStreamFormatter& text, std::uint64_t count, const char* noun) {
  text << count << ' ' << noun << (count == 1 ? "" : "s");
}

}  // namespace

std::string Statistics::ToText() const {
  KOVAStringOutputStream stream;
  KOVAStreamFormatter text(&stream);
  text << (file == "-" ? "standard input" : quoteText(file).c_str()) << ": ";
  writeCount(text, summary.parts, "part");
  writeCount(text << ", ", summary.instances, "instance");
  writeCount(text << ", ", summary.edges, "edge");
  text << " of length " << toShortText(summary.edgeLength).c_str();
  writeCount(text << ", ", summary.triangles, "triangle");
  if (summary.hasBox) {
    text << ", box ";
    writePoint(text, summary.lowest);
    text << " to ";
    writePoint(text, summary.highest);
  } else {
    text << ", no box";
  }
  text << ", " << (unit.empty() ? "no unit" : unit.c_str());
  char tail[96];
  std::snprintf(tail, sizeof tail, ", %.3f s, peak memory %.1f MiB", seconds,
                static_cast<double>(peakBytes) / (1 << 20));
  text << tail;
  if (warnings != 0) writeCount(text << ", ", warnings, "warning");
  if (errors != 0) writeCount(text << ", ", errors, "error");
  text << '\n';
  return {stream.GetBytes(), stream.GetByteCount()};
}

std::string Statistics::ToJson() const {
  KOVAStringOutputStream stream;
  KOVAStreamFormatter json(&stream);
  json << "{\"file\": " << quoteJson(file).c_str() << ", \"parts\": " << summary.parts
       << ", \"instances\": " << summary.instances << ", \"edges\": " << summary.edges
       << ", \"triangles\": " << summary.triangles << ", \"edge_length\": " << summary.edgeLength
       << ", \"box\": ";
  if (summary.hasBox) {
    const translators::Point& low = summary.lowest;
    const translators::Point& high = summary.highest;
    json << "{\"min\": [" << low.x << ", " << low.y << ", " << low.z << "], \"max\": [" << high.x
         << ", " << high.y << ", " << high.z << "]}";
  } else {
    json << "null";
  }
  json << ", \"unit\": " << (unit.empty() ? "null" : quoteJson(unit).c_str())
       << ", \"seconds\": " << seconds << ", \"peak_bytes\": " << static_cast<long long>(peakBytes)
       << ", \"warnings\": " << warnings << ", \"errors\": " << errors << "}\n";
  return {stream.GetBytes(), stream.GetByteCount()};
}

}  // namespace kova::translate
