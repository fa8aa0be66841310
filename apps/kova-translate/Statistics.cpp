#include "apps/kova-translate/Statistics.h"

#include "apps/kova-translate/Console.h"
#include "kovabase/io/KOVAStreamFormatter.h"
#include "kovabase/io/KOVAStringOutputStream.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace kova::translate {

namespace {

std::string toJsonText(std::string_view text) {
  // Bytes that are not UTF-8 become the replacement character.
  KOVAStringOutputStream bytes;
  bytes.Write(KOVAString::fromBytes(text.data(), static_cast<int>(text.size()), "UTF-8"));
  std::string json = "\"";
  for (const char c : std::string_view(bytes.GetBytes(), bytes.GetByteCount())) {
    if (c == '"' || c == '\\') {
      json += '\\';
      json += c;
    } else if (static_cast<unsigned char>(c) < 0x20) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04X", unsigned{static_cast<unsigned char>(c)});
      json += escape;
    } else {
      json += c;
    }
  }
  return json + "\"";
}

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

void Statistics::Count(const translators::Model& model) {
  parts = static_cast<std::uint64_t>(model.parts.size());
  instances = parts;
  triangles = 0;
  hasBox = false;
  for (const translators::Part& part : model.parts) {
    triangles += static_cast<std::uint64_t>(part.mesh.triangles.size());
    for (const translators::Point& point : part.mesh.vertices) {
      if (!hasBox) lowest = highest = point;
      hasBox = true;
      lowest = {std::min(lowest.x, point.x), std::min(lowest.y, point.y),
                std::min(lowest.z, point.z)};
      highest = {std::max(highest.x, point.x), std::max(highest.y, point.y),
                 std::max(highest.z, point.z)};
    }
  }
}

std::string Statistics::ToText() const {
  KOVAStringOutputStream stream;
  KOVAStreamFormatter text(&stream);
  text << (file == "-" ? "standard input" : quoteText(file).c_str()) << ": ";
  writeCount(text, parts, "part");
  writeCount(text << ", ", instances, "instance");
  writeCount(text << ", ", edges, "edge");
  text << " of length " << toShortText(edgeLength).c_str();
  writeCount(text << ", ", triangles, "triangle");
  if (hasBox) {
    text << ", box ";
    writePoint(text, lowest);
    text << " to ";
    writePoint(text, highest);
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
  json << "{\"file\": " << toJsonText(file).c_str() << ", \"parts\": " << parts
       << ", \"instances\": " << instances << ", \"edges\": " << edges
       << ", \"triangles\": " << triangles << ", \"edge_length\": " << edgeLength << ", \"box\": ";
  if (hasBox) {
    json << "{\"min\": [" << lowest.x << ", " << lowest.y << ", " << lowest.z << "], \"max\": ["
         << highest.x << ", " << highest.y << ", " << highest.z << "]}";
  } else {
    json << "null";
  }
  json << ", \"unit\": " << (unit.empty() ? "null" : toJsonText(unit).c_str())
       << ", \"seconds\": " << seconds << ", \"peak_bytes\": " << static_cast<long long>(peakBytes)
       << ", \"warnings\": " << warnings << ", \"errors\": " << errors << "}\n";
  return {stream.GetBytes(), stream.GetByteCount()};
}

}  // namespace kova::translate
