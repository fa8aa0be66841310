// Takes paths apart and puts them together, and writes to a temporary file.

#include <kovabase/KOVABase.h>

#include <cstdio>

int main() {
  KOVAFileOutputStream output(stdout);
  KOVAStreamFormatter out(&output);

  // [parts]
  const KOVAFilePath path("models/2026/gear box.tar.gz");
  out << path.GetPath() << KOVAEndLine;       // one form on every system
  out << path.GetDirectory() << KOVAEndLine;  // without the last backslash
  out << path.GetName() << KOVAEndLine;
  out << path.GetNameWithoutExtension() << KOVAEndLine;
  out << path.GetLastExtension() << KOVAEndLine;
  // [parts]

  // [build]
  const KOVAFilePath target(path.GetDirectory(), path.GetNameWithoutExtension());
  out << (target + ".obj").GetPath() << KOVAEndLine;
  out << path.ReplaceLastExtension("zip").GetPath() << KOVAEndLine;
  // [build]

  // [temporary]
  KOVAFilePath where;
  {
    KOVATemporaryFile temporary;
    temporary.GetPath(where);
    std::FILE* stream = temporary.Open("w");
    if (stream == nullptr) return 1;
    std::fputs("scratch", stream);
    temporary.Close();
    out << "while it lives: " << where.DoesFileExist() << KOVAEndLine;
  }
  out << "after that: " << where.DoesFileExist() << KOVAEndLine;
  // [temporary]

  // [folder]
  const KOVAFilePath folder("parts");
  folder.MakeDirectory();
  for (const char* name : {"shaft", "housing"}) {
    KOVAFileOutputStream part((folder.GetPath() + "/" + name));
    part.Write("a part\n");
    if (part.Close().IsFailure()) return 1;
  }
  Gk_DirElement content(folder);
  content.Read();
  for (int i = 0; i < content.GetFileCount(); ++i) {
    out << content.GetFile(i).GetName() << KOVAEndLine;
  }
  folder.RemoveNonEmptyDirectory();
  // [folder]
  return out.GetResult().IsSuccess() ? 0 : 1;
}
