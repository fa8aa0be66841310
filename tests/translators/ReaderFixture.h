#pragma once

#include "kovabase/events/KOVAMessageEvents.h"
#include "kovabase/events/KOVAProgressEvents.h"
#include "kovabase/events/KOVCEventBus.h"
#include "kovabase/events/KOVCEventListener.h"
#include "kovabase/translation/KOVAReader.h"
#include "kovabase/translation/KOVAWriter.h"
#include "translators/interface/Translator.h"
#include "translators/model/Placement.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace kova::translators {

/// Keeps the messages that are fired while it lives: "line 3: TEXT", "byte 84: TEXT" or "TEXT",
/// without the name of the file.
class RecordingListener : public KOVCEventListener {
 public:
  RecordingListener() { KOVCEventBus::GetEventBus().AddListener(this); }
  ~RecordingListener() override { KOVCEventBus::GetEventBus().RemoveListener(this); }

  void HandleEvent(KOVCEvent& event) override {
    if (const auto* const error = dynamic_cast<KOVAErrorEvent*>(&event)) {
      errors.push_back(Shorten(error->GetMessage()));
    } else if (const auto* const warning = dynamic_cast<KOVAWarningEvent*>(&event)) {
      warnings.push_back(Shorten(warning->GetMessage()));
    } else if (const auto* const stage = dynamic_cast<KOVAConversionStageEvent*>(&event)) {
      fractions.push_back(stage->GetFraction());
    }
  }

  std::vector<std::string> warnings;
  std::vector<std::string> errors;
  /// How far the work was at each stage event.
  std::vector<double> fractions;

 private:
  static std::string Shorten(const char* message) {
    const std::string text = message == nullptr ? "" : message;
    if (!text.starts_with(kFile)) return text;
    return text.substr(std::strlen(kFile) + 2);
  }

 public:
  /// What messages call the file.
  static constexpr char kFile[] = "'file'";
};

using CreateReader = KOVAFormatReader* (*)(const ReadRequest& request);
using CreateWriter = KOVAFormatWriter* (*)(const WriteRequest& request);

/// One pass over a format reader as a program makes it: the first failure is the result.
inline KOVAResult runReader(const KOVAFormatReaderHandle& format) {
  KOVAReader reader(format);
  KOVAResult result = reader.ReadHeaderSection();
  if (result.IsSuccess()) result = reader.ReadFileInfoSection();
  if (result.IsSuccess()) result = reader.ReadDataSection();
  if (result.IsSuccess()) result = reader.Resolve();
  if (result == KOVAResultCode::kNotImplemented) result = KOVAResultCode::kSuccess;
  reader.ReleaseEntityReaders();
  return result;
}

inline KOVAResult runWriter(const KOVAFormatWriterHandle& format) {
  KOVAWriter writer(format);
  KOVAResult result = writer.WriteHeaderSection();
  if (result.IsSuccess()) result = writer.WriteFileInfoSection();
  if (result.IsSuccess()) result = writer.WriteDataSection();
  if (result.IsSuccess()) result = writer.Resolve();
  if (result == KOVAResultCode::kNotImplemented) result = KOVAResultCode::kSuccess;
  writer.ReleaseEntityWriters();
  return result;
}

/// Bytes in memory to be read, and all that comes of it:
///
///     MemoryRequest request("solid ...");
///     request.Run(createStlReader);
///     EXPECT_TRUE(request.result.IsSuccess());
class MemoryRequest {
 public:
  explicit MemoryRequest(std::string content, KOVAString name = "") : bytes(std::move(content)) {
    model.name = std::move(name);
  }
  MemoryRequest(const MemoryRequest&) = delete;
  MemoryRequest& operator=(const MemoryRequest&) = delete;

  KOVAResult Run(CreateReader create) {
    const RecordingListener listener;
    const ReadRequest request{KOVAFileHandle(),
                              reinterpret_cast<unsigned char*>(bytes.data()),
                              bytes.size(),
                              report,
                              options,
                              header,
                              model};
    result = runReader(create(request));
    warnings = listener.warnings;
    errors = listener.errors;
    fractions = listener.fractions;
    return result;
  }

  std::string bytes;
  const Report report{RecordingListener::kFile};
  KOVAOptions options;
  KOVAFileHeader header;
  Model model;
  KOVAResult result;
  std::vector<std::string> warnings;
  std::vector<std::string> errors;
  std::vector<double> fractions;
};

/// Whether all that the model promises to its users holds.
inline bool isSound(const Model& model) {
  const auto isFinite = [](const Point& point) {
    return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
  };
  for (const Instance& instance : model.instances) {
    if (!model.parts.isValidIndex(instance.part)) return false;
  }
  for (const Part& part : model.parts) {
    if (!std::all_of(part.points.begin(), part.points.end(), isFinite)) return false;
    const auto points = static_cast<std::uint32_t>(part.points.size());
    for (const Curve& curve : part.curves) {
      if (curve.pointCount < 2 || curve.firstPoint > points ||
          curve.pointCount > points - curve.firstPoint || !std::isfinite(curve.length)) {
        return false;
      }
    }
    for (const Mesh& mesh : part.meshes) {
      if (!std::all_of(mesh.vertices.begin(), mesh.vertices.end(), isFinite)) return false;
      for (const Triangle& triangle : mesh.triangles) {
        for (const std::uint32_t corner : triangle.corners) {
          if (corner >= static_cast<std::uint32_t>(mesh.vertices.size())) return false;
        }
      }
    }
  }
  return true;
}

/// The corners of all triangles where the instances put them, in the sense of rotation that shows
/// the outside.
inline std::vector<Point> collectCorners(const Model& model) {
  std::vector<Point> corners;
  for (const Instance& instance : model.instances) {
    const Placement placement(instance.placement);
    const bool isMirror = placement.IsMirror();
    for (const Mesh& mesh : model.parts[instance.part].meshes) {
      for (const auto& [triangle] : mesh.triangles) {
        for (const std::uint32_t corner :
             {triangle[0], triangle[isMirror ? 2 : 1], triangle[isMirror ? 1 : 2]}) {
          corners.push_back(placement(mesh.vertices[static_cast<int>(corner)]));
        }
      }
    }
  }
  return corners;
}

/// Whether the points are the same in single precision.
inline bool areSameFloats(const std::vector<Point>& left, const std::vector<Point>& right) {
  const auto isSame = [](double a, double b) {
    return static_cast<float>(a) == static_cast<float>(b);
  };
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&](const Point& a, const Point& b) {
                      return isSame(a.x, b.x) && isSame(a.y, b.y) && isSame(a.z, b.z);
                    });
}

/// A file of its own that is gone afterwards.
class TemporaryFile {
 public:
  TemporaryFile() {
    char name[] = "/tmp/kova-translators-XXXXXX";
    const int descriptor = mkstemp(name);
    if (descriptor >= 0) close(descriptor);
    _path = name;
  }
  explicit TemporaryFile(const std::string& bytes) : TemporaryFile() {
    std::ofstream(_path, std::ios::binary) << bytes;
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() { std::remove(_path.c_str()); }

  const std::string& GetPath() const { return _path; }
  KOVAFileHandle GetFile() const { return new KOVAFile(KOVAFilePath(_path.c_str())); }
  std::string GetBytes() const {
    std::ifstream stream(_path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

 private:
  std::string _path;
};

/// A model to be written, and all that comes of it.
class WriteTrial {
 public:
  KOVAResult Run(CreateWriter create, const Model& model) {
    const TemporaryFile file;
    Run(create, model, file.GetFile());
    bytes = file.GetBytes();
    return result;
  }
  void Run(CreateWriter create, const Model& model, const KOVAFileHandle& file) {
    const RecordingListener listener;
    result = runWriter(create(WriteRequest{file, report, options, model}));
    warnings = listener.warnings;
    errors = listener.errors;
    fractions = listener.fractions;
  }

  const Report report{RecordingListener::kFile};
  KOVAOptions options;
  KOVAResult result;
  std::string bytes;
  std::vector<std::string> warnings;
  std::vector<std::string> errors;
  std::vector<double> fractions;
};

}  // namespace kova::translators
