#include "catalogue/VectorHelp.h"

VectorHelp *VectorHelp::Instance() {
    static VectorHelp help;
    return &help;
}
