#pragma once

#include <kovabase/KOVABase.h>

#include <vector>

// A small text format with all three kinds of section:
//
//   POINTS 1          header: the format's name and version
//   UNIT MILLIMETER   file information: the length unit
//   2                 data: the number of points, then x y z of each
//   0 0 0
//   10 0 2.5

struct PointFile {
  KOVAUnit unit = KOVAUnitUnknown;
  std::vector<KOVAVector> points;
};

/// @return InvalidFile with a message for what is not a point file.
KOVAResult readPointFile(const KOVAFilePath& path, PointFile& file);

/// @return FileOpenError or FileSaveError when the file cannot be written.
KOVAResult writePointFile(const KOVAFilePath& path, const PointFile& file);
