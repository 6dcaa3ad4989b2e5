#include "platform/project/ModelTypeE.h"

std::string ModelTypeE::GetModelTypeName(Model type) {
    switch (type) {
    case PCA:
        return "PCA";
    case PLS:
        return "PLS";
    case PLSDA:
        return "PLS-DA";
    case OPLS:
        return "OPLS";
    case O2PLS:
        return "O2PLS";
    default:
        return {};
    }
}
