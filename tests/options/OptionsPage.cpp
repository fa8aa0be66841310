// Writes the page of all options and environment variables: kova_options_page FILE

#include "kovabase/io/KOVAFileOutputStream.h"
#include "kovabase/io/KOVAStreamFormatter.h"
#include "kovabase/options/KOVAOptionCatalogue.h"

#include <cstdio>

int main(int count, char** arguments) {
  if (count != 2) {
    std::fprintf(stderr, "usage: %s docs/options-and-variables.md\n", arguments[0]);
    return 2;
  }
  KOVAFileOutputStream stream(arguments[1]);
  KOVAStreamFormatter formatter(&stream);
  KOVAOptionCatalogue::WriteMarkdown(formatter);
  stream.Flush();
  if (stream.GetResult().IsSuccess()) return 0;
  std::perror(arguments[1]);
  return 1;
}
