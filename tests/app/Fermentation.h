#pragma once

#include "tests/app/Program.h"

// The simulated fermentation: models 1 to 3 of its phases, and new batches, of which six are faulty.
class Fermentation : public Program {
protected:
    Fermentation() {
        table = Shell("python3 " SOURCE_DIR "/examples/fermentation.py .").out;
        Done("import tank.project good.csv --batch batch --phase phase");
        Done("fit tank.project --type batch --maturity time --phase-models --treatment shifted --align maturity "
             "--components 2");
        Done("predict tank.project new.csv");
    }

    std::string table;
};
