// Reads and sets environment variables, and looks at a snapshot of all of them.

#include <kovabase/KOVABase.h>

#include <cstdio>

int main() {
  // [set]
  KOVAEnvironment::PutVariable("EXAMPLE_WORKERS", "4 of them");
  int workers = 1;
  if (KOVAEnvironment::GetVariable("EXAMPLE_WORKERS", workers).IsSuccess()) {
    std::printf("%d workers\n", workers);  // the number that the text begins with
  }
  // [set]

  // [scoped]
  {
    const KOVAEnvironmentVariableScoped guard("EXAMPLE_WORKERS", "1");
    KOVAEnvironment::GetVariable("EXAMPLE_WORKERS", workers);
    std::printf("%d inside\n", workers);
  }
  KOVAEnvironment::GetVariable("EXAMPLE_WORKERS", workers);
  std::printf("%d outside\n", workers);
  // [scoped]

  // [snapshot]
  // Taken once, at the first call; later changes do not reach it.
  const KOVAEnvironment& atStart = KOVAEnvironment::GetEnv();
  KOVAEnvironment::PutVariable("EXAMPLE_LATER", "1");
  // [snapshot]
  KOVAString text;
  std::printf("in the snapshot: %d\n", atStart.GetProperty("EXAMPLE_WORKERS", text).IsSuccess());
  std::printf("not in it: %d\n", atStart.GetProperty("EXAMPLE_LATER", text).IsFailure());

  // [properties]
  KOVAProperties properties;
  properties.AddEntry("author=A. Engineer");
  properties.SetProperty("author", "B. Engineer");
  properties.GetProperty("author", text);
  // [properties]
  char shown[32];
  text.convertToUTF8(shown, sizeof shown);
  std::printf("%s\n", shown);
  return 0;
}
