// Reads a configuration file: sections, lists of values, what does not fit, and a set of options.

#include <kovabase/KOVABase.h>

#include <cstdio>

namespace {

const char kText[] =
    "# before the first section: options of the translation\n"
    "Step.Tolerance = 0.02\n"
    "Unit: inch\n"
    "\n"
    "[layers]\n"
    "shown = 1, 2, three\n"
    "this line is neither\n";

}  // namespace

int main() {
  const KOVAFilePath path("example.cfg");
  std::FILE* file = path.OpenFile("w");
  if (file == nullptr) return 1;
  std::fputs(kText, file);
  std::fclose(file);

  // [load]
  KOVACfgFile configuration;
  const KOVAResult result = configuration.Load(path);
  // [load]
  std::printf("loaded: %s\n", result.GetMessage());

  // [values]
  double tolerance = 0.0;
  configuration.GetDouble("Step.Tolerance", tolerance);
  std::printf("tolerance %g\n", tolerance);

  const int count = configuration.GetArraySize("shown", "layers");
  for (int i = 0; i < count; ++i) {
    int layer = 0;
    if (configuration.GetInt("shown", layer, i, "layers")) std::printf("layer %d\n", layer);
  }
  // [values]

  // [errors]
  // What did not fit is collected: it never stops the reading.
  for (int i = 0; i < configuration.GetErrorCount(); ++i) {
    std::printf("%s\n", configuration.GetErrorMessage(i));
  }
  // [errors]

  // [options]
  KOVAOptions options;
  options.ReadFromFile("example.cfg");  // nothing: the file has errors
  std::printf("%d options\n", options.GetCount());
  // [options]
  return 0;
}
