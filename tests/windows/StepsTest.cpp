// What a person does at the windows and sees there, as the texts in steps/ tell it.
#include "tests/windows/support/StepRunner.h"

#include <doctest/doctest.h>

TEST_CASE("Script Processor") {
  RunSteps("windows/steps/ScriptProcessor.steps", ONX_OBJ_SCRIPT_PROCESSOR, "Script processor");
}

TEST_CASE("questions") {
  RunSteps("windows/steps/Questions.steps", ONX_OBJ_SCRIPT_PROCESSOR, "Script processor");
}

TEST_CASE("Terminal") {
  RunSteps("windows/steps/Terminal.steps", ONX_OBJ_TERMINAL, "Terminal");
}

TEST_CASE("File Manager") {
  RunSteps("windows/steps/FileManager.steps", ONX_OBJ_FILE_MANAGER, "File manager");
}
