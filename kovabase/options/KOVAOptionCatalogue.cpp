#include "kovabase/options/KOVAOptionCatalogue.h"

#include "kovabase/io/KOVAStreamFormatter.h"

namespace {

using Variable = KOVAOptionCatalogue::Variable;
using Option = KOVAOptionCatalogue::Option;

constexpr Variable kVariables[] = {
    {"ADL_IMAGE_DOS_DIR", "not set", "The workspace directory."},
    {"ADL_ODT_IN", "not set",
     "Gives the workspace directory when `ADL_IMAGE_DOS_DIR` does not: the directory of this path "
     "less its last 24 characters."},
    {"KOVAConsoleTracesLevel", "the level that the program asks for",
     "The lowest level of events that the console shows: a number, or debug, test, verbose, "
     "message, info, warning, error or assert in any case."},
    {"KOVALogLevel", "everything is logged",
     "The lowest level of events that a log takes which is opened without a level; written like "
     "`KOVAConsoleTracesLevel`."},
    {"KOVALoggers", "no traces",
     "The traces that report: each one whose name occurs in this text, case and all."},
    {"KOVATaskInfoDetailed", "off",
     "`true`: the timing of every task is reported in detail, not the main task's alone."},
    {"KOVATaskTiming", "off", "`true`: the time and memory that tasks take are measured."},
    {"KOVA_FORCE_UNLOAD_DLLS", "libraries stay loaded",
     "Exactly `TRUE`: the end of the process unloads all shared libraries, also those that are not "
     "meant to be unloaded."},
    {"KOVA_TRANSLATORS", "the folders beside the program",
     "Folders, separated by colons, in which kova-translate looks for translators first."},
    {"KOVA_WIN_SHORT_NAME", "true",
     "Set to anything but `true`: no short name is sought for a path with unsupported characters."},
    {"PATH", "not set", "Directories in which shared libraries are looked for, too."},
    {"TMPDIR", "the working folder",
     "The folder in which temporary files are made, when it exists."},
    {"VEX_FORCE_NO_ORLA_THREADS", "threads are used",
     "Begins with T, t, Y, y or 1: the thread pool starts no workers."},
    {"VEX_NUM_THREADS", "one for each processor", "The number of workers of the thread pool."},
};

constexpr Option kOptions[] = {
    {"Obj.Write.Curves", "bool", "true",
     "Whether curves are written, as lines, besides the faces."},
    {"Ply.Write.Form", "string", "little",
     "The form of PLY files: `little` or `big`, which are binary in that order of bytes, or "
     "`ascii`."},
    {"Step.Read.Angle", "double", "20",
     "The most degrees that a curve turns from one of its chords to the next."},
    {"Step.Read.Tolerance", "double", "0.01",
     "The greatest distance between a curve and its chords, in millimetres."},
    {"Stl.Write.Form", "string", "binary", "The form of STL files: `binary` or `ascii`."},
    {"Translate.Unit", "string", "",
     "The unit of length of what is written, such as `mm` or `inch`; empty for that of the model."},
    {"Translate.UnitWhenUnspecified", "string", "",
     "The unit of length of a model that names none; empty leaves its lengths as they are."},
};

}  // namespace

std::span<const Variable> KOVAOptionCatalogue::GetVariables() noexcept { return kVariables; }

std::span<const Option> KOVAOptionCatalogue::GetOptions() noexcept { return kOptions; }

void KOVAOptionCatalogue::WriteMarkdown(KOVAStreamFormatter& formatter) {
  formatter << "# Options and environment variables" << KOVAEndLine << KOVAEndLine;
  formatter << "Written from the table in `kovabase/options/KOVAOptionCatalogue.cpp` by "
               "`kova_options_page`."
            << KOVAEndLine << KOVAEndLine;
  formatter << "## Environment variables" << KOVAEndLine << KOVAEndLine;
  formatter << "| Variable | When it is not set | Meaning |" << KOVAEndLine;
  formatter << "|---|---|---|" << KOVAEndLine;
  for (const Variable& variable : GetVariables()) {
    formatter << "| `" << variable.name << "` | " << variable.standard << " | " << variable.meaning
              << " |" << KOVAEndLine;
  }
  formatter << "| `KOVA` and the name of an option | the option's own value | Overrides the option "
               "where it is read with the environment, and a warning says so. Case counts: "
               "`AngleUnit` is read from `KOVAAngleUnit`. A text that is not of the option's type "
               "overrides nothing. |"
            << KOVAEndLine << KOVAEndLine;
  formatter << "## Options" << KOVAEndLine << KOVAEndLine;
  formatter << "| Option | Type | Default | Meaning |" << KOVAEndLine;
  formatter << "|---|---|---|---|" << KOVAEndLine;
  for (const Option& option : GetOptions()) {
    formatter << "| `" << option.name << "` | " << option.type << " | " << option.standard << " | "
              << option.meaning << " |" << KOVAEndLine;
  }
}
