#pragma once

#include "translators/model/Model.h"

#include <cstdint>
#include <string>

namespace kova::translate {

/// What is known about one translated file.
struct Statistics {
  std::string file;
  std::uint64_t parts = 0;
  /// Parts as they are placed; here each part stands once.
  std::uint64_t instances = 0;
  /// Curves of the wireframe and their length; meshes have none.
  std::uint64_t edges = 0;
  std::uint64_t triangles = 0;
  double edgeLength = 0.0;
  /// The bounding box; it means something only when there is a vertex.
  bool hasBox = false;
  translators::Point lowest{};
  translators::Point highest{};
  /// The name of the length unit; empty when the file names none.
  std::string unit;
  double seconds = 0.0;
  /// Of the whole process up to now.
  std::int64_t peakBytes = 0;
  std::uint64_t warnings = 0;
  std::uint64_t errors = 0;

  /// Takes the counts and the box from the model.
  void Count(const translators::Model& model);

  /// One line each, with its line end. The JSON object is valid UTF-8 whatever the file's name is.
  std::string ToText() const;
  std::string ToJson() const;
};

}  // namespace kova::translate
