// The sub-commands of camext, one source each.
#pragma once

namespace camext {

// camext run [--json] FILE.json...: plays scenario files through the built library.
int runCommand(int argc, char** argv);
// camext lint FILE: checks a feature configuration file.
int lintCommand(int argc, char** argv);
// camext explain --package PKG [--config FILE]: every known key and its value for PKG.
int explainCommand(int argc, char** argv);

}  // namespace camext
