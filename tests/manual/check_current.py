"""The kept manual page and completion are what the generator writes now, and mandoc finds no fault."""

import shutil
import subprocess
import sys
from pathlib import Path

source, program, scratch = (Path(argument) for argument in sys.argv[1:])
folder = source / "packaging" / "manual"
generate = folder / "generate.py"
subprocess.run([sys.executable, generate, program, scratch], check=True)
faults = []
for name in ("kova-translate.1", "kova-translate.bash"):
    if (folder / name).read_text(encoding="utf-8") != (scratch / name).read_text(encoding="utf-8"):
        faults.append(
            f"{folder / name} is not what the program says now.\n"
            f"Type: python3 {generate.relative_to(source)} {program} {folder.relative_to(source)}")
if shutil.which("mandoc"):
    lint = subprocess.run(["mandoc", "-T", "lint", "-W", "warning", folder / "kova-translate.1"],
                          capture_output=True, text=True)
    if lint.stdout:
        faults.append(lint.stdout)
if faults:
    sys.exit("\n".join(faults))
