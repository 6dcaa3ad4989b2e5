#include "platform/text/Exception.h"
#include "tests/catalogue/DelegateCases.h"

namespace {

using namespace delegates;

// Terms 1 to 3 are X, 4 and 5 are Y. The number is 2 and, where a vector has them, the second number 2 too, the round
// 3, and values are unscaled but not transformed back.
// clang-format off
DelegateCase const cases[] = {
    {"Coeff", Loadings, "M2,1,2,3", "GetCoefficients(2, 1, [{1 5 0 0}], 2)", "GetCoefficientsColumnIDs(2, 2)"},
    {"Coeff", Loadings, "M4,1,2,3", "GetCoefficients(4, 1, [{1 5 0 0}], 2)", "GetCoefficientsColumnIDs(4, 2)"},
    {"CoeffC", Loadings, "M2,1,2,3", "GetCoefficientsCenterd(2, 1, [{1 5 0 0}], 2)", "GetCoefficientsCenterdColumnIDs(2, 2)"},
    {"CoeffC", Loadings, "M4,1,2,3", "GetCoefficientsCenterd(4, 1, [{1 5 0 0}], 2)", "GetCoefficientsCenterdColumnIDs(4, 2)"},
    {"CoeffCS", Loadings, "M2,1,2,3", "GetCoefficientsCenterdScaled(2, 1, [{1 5 0 0}], 2, 2)", "GetCoefficientsCenterdScaledColumnIDs(2, 2, 2)"},
    {"CoeffCS", Loadings, "M4,1,2,3", "GetCoefficientsCenterdScaled(4, 1, [{1 5 0 0}], 2, 2)", "GetCoefficientsCenterdScaledColumnIDs(4, 2, 2)"},
    {"CoeffCScv", Loadings, "M2,1,2,3", "GetCoefficientsCenterdScaledcv(2, 3, {1 5 0 0}, [1], 2)", "GetCoefficientsCenterdScaledColumnIDs(2, 2, 2)"},
    {"CoeffCScv", Loadings, "M4,1,2,3", "GetCoefficientsCenterdScaledcv(4, 3, {1 5 0 0}, [1], 2)", "GetCoefficientsCenterdScaledColumnIDs(4, 2, 2)"},
    {"CoeffCScvSE", Loadings, "M2,1,2,3", "GetCoefficientsCenterdScaledcvSE(2, 1, {1 5 0 0}, 2)", "GetCoefficientsCenterdScaledColumnIDs(2, 2, 2)"},
    {"CoeffCScvSE", Loadings, "M4,1,2,3", "GetCoefficientsCenterdScaledcvSE(4, 1, {1 5 0 0}, 2)", "GetCoefficientsCenterdScaledColumnIDs(4, 2, 2)"},
    {"CoeffMLR", Loadings, "M2,1,2,3", "GetCoefficientsMLR(2, 1, [{1 5 0 0}], 2)", "GetCoefficientsMLRColumnIDs(2, 2)"},
    {"CoeffMLR", Loadings, "M4,1,2,3", "GetCoefficientsMLR(4, 1, [{1 5 0 0}], 2)", "GetCoefficientsMLRColumnIDs(4, 2)"},
    {"CoeffRot", Loadings, "M2,1,2,3", "GetCoefficientsRotated(2, 1, [{1 5 0 0}], 2, 0)", "GetCoefficientsRotatedColumnIDs(2, 2)"},
    {"CoeffRot", Loadings, "M4,1,2,3", "GetCoefficientsRotated(4, 1, [{1 5 0 0}], 2, 0)", "GetCoefficientsRotatedColumnIDs(4, 2)"},
    {"DModX", Scores, "M2,1,2,3", "GetDModX(2, [1], 2, 2, -1)", "GetDModXColumnIDs(2, -1)"},
    {"DModX", Scores, "M4,1,2,3", "GetDModX(4, [1], 2, 2, -1)", "GetDModXColumnIDs(4, -1)"},
    {"DModXPS", Scores, "M2,1,2,3", "GetDModXPS(2, [1], 2, 2, -1)", "GetDModXPSColumnIDs(2, -1)"},
    {"DModXPS", Scores, "M4,1,2,3", "GetDModXPS(4, [1], 2, 2, -1)", "GetDModXPSColumnIDs(4, -1)"},
    {"DModXPS+", Scores, "M2,1,2,3", "GetDModXPSCombined(2, [1], 2, 2)", "GetDModXPSCombinedColumnIDs(2)"},
    {"DModXPS+", Scores, "M4,1,2,3", "GetDModXPSCombined(4, [1], 2, 2)", "GetDModXPSCombinedColumnIDs(4)"},
    {"DModY", Scores, "M2,1,2,3", "GetDModY(2, [1], 2)", "GetDModYColumnIDs(2)"},
    {"DModY", Scores, "M4,1,2,3", "GetDModY(4, [1], 2)", "GetDModYColumnIDs(4)"},
    {"DModYPS", Scores, "M2,1,2,3", "GetDModYPS(2, [1], 2)", "GetDModYPSColumnIDs(2)"},
    {"DModYPS", Scores, "M4,1,2,3", "GetDModYPS(4, [1], 2)", "GetDModYPSColumnIDs(4)"},
    {"Eig", PerComponent, "M2,1,2,3", "GetEigenValues(2)", "GetEigenValuesColumnIDs(2)"},
    {"Iter", PerComponent, "M2,1,2,3", "GetIterations(2)", "GetIterationsColumnIDs(2)"},
    {"MPowX", Loadings, "M2,1,2,3", "GetMPowX(2, [1])", "GetMPowXColumnIDs(2)"},
    {"OLevX", Scores, "M2,1,2,3", "GetOLevX(2, [1])", "GetOLevXColumnIDs(2)"},
    {"OLevY", Scores, "M2,1,2,3", "GetOLevY(2, [1])", "GetOLevYColumnIDs(2)"},
    {"PModX", Scores, "M2,1,2,3", "GetPModX(2, [1])", "GetPModXColumnIDs(2)"},
    {"PModX", Scores, "M4,1,2,3", "GetPModX(4, [1])", "GetPModXColumnIDs(4)"},
    {"PModXPS", Scores, "M2,1,2,3", "GetPModXPS(2, [1])", "GetPModXPSColumnIDs(2)"},
    {"PModXPS", Scores, "M4,1,2,3", "GetPModXPS(4, [1])", "GetPModXPSColumnIDs(4)"},
    {"PModXPS+", Scores, "M2,1,2,3", "GetPModXPSCombined(2, [1])", "GetPModXPSCombinedColumnIDs(2)"},
    {"PModXPS+", Scores, "M4,1,2,3", "GetPModXPSCombined(4, [1])", "GetPModXPSCombinedColumnIDs(4)"},
    {"PModY", Scores, "M2,1,2,3", "GetPModY(2, [1])", "GetPModYColumnIDs(2)"},
    {"PModY", Scores, "M4,1,2,3", "GetPModY(4, [1])", "GetPModYColumnIDs(4)"},
    {"PModYPS", Scores, "M2,1,2,3", "GetPModYPS(2, [1])", "GetPModYPSColumnIDs(2)"},
    {"PModYPS", Scores, "M4,1,2,3", "GetPModYPS(4, [1])", "GetPModYPSColumnIDs(4)"},
    {"Q2", PerComponent, "M2,1,2,3", "GetQ2(2)", "GetQ2ColumnIDs(2)"},
    {"Q2(cum)progression", PerComponent, "M4,1,2,3", "GetQ2CumProgression(4)", "GetQ2CumProgressionColumnIDs(4)"},
    {"Q2cum", PerComponent, "M2,1,2,3", "GetQ2Cum(2)", "GetQ2CumColumnIDs(2)"},
    {"Q2cum(Last)", PerComponent, "M2,1,2,3", "GetQ2CumLast(2)", "GetLastCompColumnIDs(2)"},
    {"Q2VX", Loadings, "M1,1,2,3", "GetQ2VX(1, [1])", "GetQ2VXColumnIDs(1)"},
    {"Q2VX", PerComponent, "M1,1,2,3", "GetQ2VXPerComponent(1, [{1 2 0 0}])", "GetQ2VXCumPerComponentColumnIDs(1)"},
    {"Q2VXcum", Loadings, "M1,1,2,3", "GetQ2VXCum(1, [1])", "GetQ2VXCumColumnIDs(1)"},
    {"Q2VXcum", PerComponent, "M1,1,2,3", "GetQ2VXCumPerComponent(1, [{1 2 0 0}])", "GetQ2VXCumPerComponentColumnIDs(1)"},
    {"Q2VY", Loadings, "M2,1,2,3", "GetQ2VY(2, [1])", "GetQ2VYColumnIDs(2)"},
    {"Q2VY", PerComponent, "M2,1,2,3", "GetQ2VYPerComponent(2, [{1 5 0 0}])", "GetQ2VYPerComponentColumnIDs(2)"},
    {"Q2VYcum", Loadings, "M2,1,2,3", "GetQ2VYCum(2, [1])", "GetQ2VYCumColumnIDs(2)"},
    {"Q2VYcum", PerComponent, "M2,1,2,3", "GetQ2VYCumPerComponent(2, [{1 5 0 0}])", "GetQ2VYCumPerComponentColumnIDs(2)"},
    {"R2(cum)progression", PerComponent, "M4,1,2,3", "GetR2CumProgression(4)", "GetR2CumProgressionColumnIDs(4)"},
    {"R2VX", Loadings, "M2,1,2,3", "GetR2VX(2, [1])", "GetR2VXColumnIDs(2)"},
    {"R2VX", PerComponent, "M2,1,2,3", "GetR2VXPerComponent(2, [{1 2 0 0}])", "GetR2VXPerComponentColumnIDs(2)"},
    {"R2VXAdj", Loadings, "M2,1,2,3", "GetR2VXAdj(2, [1])", "GetR2VXAdjColumnIDs(2)"},
    {"R2VXAdjcum", Loadings, "M2,1,2,3", "GetR2VXAdjCum(2, [1])", "GetR2VXAdjCumColumnIDs(2)"},
    {"R2VXAdjcum", PerComponent, "M2,1,2,3", "GetR2VXAdjCumPerComponent(2, [{1 2 0 0}])", "GetR2VXAdjCumPerComponentColumnIDs(2)"},
    {"R2VXcum", Loadings, "M2,1,2,3", "GetR2VXCum(2, [1])", "GetR2VXCumColumnIDs(2)"},
    {"R2VXcum", PerComponent, "M2,1,2,3", "GetR2VXCumPerComponent(2, [{1 2 0 0}])", "GetR2VXCumPerComponentColumnIDs(2)"},
    {"R2VY", Loadings, "M2,1,2,3", "GetR2VY(2, [1])", "GetR2VYColumnIDs(2)"},
    {"R2VY", PerComponent, "M2,1,2,3", "GetR2VYPerComponent(2, [{1 5 0 0}])", "GetR2VYPerComponentColumnIDs(2)"},
    {"R2VYAdj", Loadings, "M2,1,2,3", "GetR2VYAdj(2, [1])", "GetR2VYAdjColumnIDs(2)"},
    {"R2VYAdjcum", Loadings, "M2,1,2,3", "GetR2VYAdjCum(2, [1])", "GetR2VYAdjCumColumnIDs(2)"},
    {"R2VYAdjcum", PerComponent, "M2,1,2,3", "GetR2VYAdjCumPerComponent(2, [{1 5 0 0}])", "GetR2VYAdjCumPerComponentColumnIDs(2)"},
    {"R2VYcum", Loadings, "M2,1,2,3", "GetR2VYCum(2, [1])", "GetR2VYCumColumnIDs(2)"},
    {"R2VYcum", PerComponent, "M2,1,2,3", "GetR2VYCumPerComponent(2, [{1 5 0 0}])", "GetR2VYCumPerComponentColumnIDs(2)"},
    {"R2X", PerComponent, "M2,1,2,3", "GetR2X(2)", "GetR2XColumnIDs(2)"},
    {"R2XAdj", PerComponent, "M2,1,2,3", "GetR2XAdj(2)", "GetR2XAdjColumnIDs(2)"},
    {"R2XAdjcum", PerComponent, "M2,1,2,3", "GetR2XAdjCum(2)", "GetR2XAdjCumColumnIDs(2)"},
    {"R2Xcum", PerComponent, "M2,1,2,3", "GetR2XCum(2)", "GetR2XCumColumnIDs(2)"},
    {"R2Y", PerComponent, "M2,1,2,3", "GetR2Y(2)", "GetR2YColumnIDs(2)"},
    {"R2YAdj", PerComponent, "M2,1,2,3", "GetR2YAdj(2)", "GetR2YAdjColumnIDs(2)"},
    {"R2YAdjcum", PerComponent, "M2,1,2,3", "GetR2YAdjCum(2)", "GetR2YAdjCumColumnIDs(2)"},
    {"R2Ycum", PerComponent, "M2,1,2,3", "GetR2YCum(2)", "GetR2YCumColumnIDs(2)"},
    {"RMSEcv", Loadings, "M2,1,2,3", "GetRMSEcv(2, [1])", "GetRMSEcvColumnIDs(2)"},
    {"RMSEcv", Loadings, "M4,1,2,3", "GetRMSEcv(4, [1])", "GetRMSEcvColumnIDs(4)"},
    {"RMSEcv", PerComponent, "M2,1,2,3", "GetRMSEcvPerComponent(2, [{1 5 0 0}])", "GetRMSEcvPerComponentColumnIDs(2)"},
    {"RMSEcv(Last)", PerComponent, "M2,1,2,3", "GetRMSEcvPerComponentLast(2, [{1 5 0 0}])", "GetLastCompColumnIDs(2)"},
    {"RMSEcv-progression", PerComponent, "M4,1,2,3", "GetRMSEcvProgression(4, [{1 5 0 0}])", "GetRMSEcvProgressionColumnIDs(4)"},
    {"RMSEE", Loadings, "M2,1,2,3", "GetRMSEE(2, [1])", "GetRMSEEColumnIDs(2)"},
    {"RMSEE", Loadings, "M4,1,2,3", "GetRMSEE(4, [1])", "GetRMSEEColumnIDs(4)"},
    {"RMSEP", Loadings, "M2,1,2,3", "GetRMSEP(2, [1])", "GetRMSEPColumnIDs(2)"},
    {"RMSEP", Loadings, "M4,1,2,3", "GetRMSEP(4, [1])", "GetRMSEPColumnIDs(4)"},
    {"RMSEP", PerComponent, "M2,1,2,3", "GetRMSEPPerComponent(2, [{1 5 0 0}])", "GetRMSEPPerComponentColumnIDs(2)"},
    {"RMSEP(Last)", PerComponent, "M2,1,2,3", "GetRMSEPPerComponentLast(2, [{1 5 0 0}])", "GetLastCompColumnIDs(2)"},
    {"S2VX", Loadings, "M2,1,2,3", "GetS2VX(2, [1])", "GetS2VXColumnIDs(2)"},
    {"S2VY", Loadings, "M2,1,2,3", "GetS2VY(2, [1])", "GetS2VYColumnIDs(2)"},
    {"S2X", PerComponent, "M2,1,2,3", "GetS2X(2)", "GetS2XColumnIDs(2)"},
    {"S2Y", PerComponent, "M2,1,2,3", "GetS2Y(2)", "GetS2YColumnIDs(2)"},
    {"SDt", PerComponent, "M2,1,2,3", "GetSDT(2)", "GetSDTColumnIDs(2)"},
    {"SDu", PerComponent, "M2,1,2,3", "GetSDU(2)", "GetSDUColumnIDs(2)"},
    {"SerrL", Scores, "M2,1,2,3", "GetSerrL(2, 1, [{1 5 0 0}])", "GetSerrLColumnIDs(2)"},
    {"SerrL", Scores, "M4,1,2,3", "GetSerrL(4, 1, [{1 5 0 0}])", "GetSerrLColumnIDs(4)"},
    {"SerrLPS", Scores, "M2,1,2,3", "GetSerrLPS(2, 1, [{1 5 0 0}], 2, 2)", "GetSerrLPSColumnIDs(2)"},
    {"SerrLPS", Scores, "M4,1,2,3", "GetSerrLPS(4, 1, [{1 5 0 0}], 2, 2)", "GetSerrLPSColumnIDs(4)"},
    {"SerrU", Scores, "M2,1,2,3", "GetSerrU(2, 1, [{1 5 0 0}])", "GetSerrUColumnIDs(2)"},
    {"SerrU", Scores, "M4,1,2,3", "GetSerrU(4, 1, [{1 5 0 0}])", "GetSerrUColumnIDs(4)"},
    {"SerrUPS", Scores, "M2,1,2,3", "GetSerrUPS(2, 1, [{1 5 0 0}], 2, 2)", "GetSerrUPSColumnIDs(2)"},
    {"SerrUPS", Scores, "M4,1,2,3", "GetSerrUPS(4, 1, [{1 5 0 0}], 2, 2)", "GetSerrUPSColumnIDs(4)"},
    {"SSX", PerComponent, "M2,1,2,3", "GetSSX(2)", "GetSSXColumnIDs(2)"},
    {"SSY", PerComponent, "M2,1,2,3", "GetSSY(2)", "GetSSYColumnIDs(2)"},
    {"T2Range", Scores, "M2,1,2,3,2", "GetT2Range(2, 2, 2, -1)", "GetT2RangeColumnIDs(2, -1)"},
    {"T2Range", Scores, "M4,1,2,3", "GetT2Range(4, 0, 0, -1)", "GetT2RangeColumnIDs(4, -1)"},
    {"T2RangePS", Scores, "M2,1,2,3,2", "GetT2RangePS(2, 2, 2, -1)", "GetT2RangePSColumnIDs(2, -1)"},
    {"T2RangePS", Scores, "M4,1,2,3", "GetT2RangePS(4, 0, 0, -1)", "GetT2RangePSColumnIDs(4, -1)"},
    {"VIP", Loadings, "M2,1,2,3", "GetVIP(2, [1], 2)", "GetVIPColumnIDs(2, 2)"},
    {"VIP", Loadings, "M4,1,2,3", "GetVIP(4, [1], 2)", "GetVIPColumnIDs(4, 2)"},
    {"VIPcv", Loadings, "M2,1,2,3", "GetVIPcv(2, 3, [1], 2)", "GetVIPcvColumnIDs(2, 2)"},
    {"VIPcv", Loadings, "M4,1,2,3", "GetVIPcv(4, 3, [1], 2)", "GetVIPcvColumnIDs(4, 2)"},
    {"VIPcvSE", Loadings, "M2,1,2,3", "GetVIPcvSE(2, 1, 2)", "GetVIPcvSEColumnIDs(2, 2)"},
    {"VIPcvSE", Loadings, "M4,1,2,3", "GetVIPcvSE(4, 1, 2)", "GetVIPcvSEColumnIDs(4, 2)"},
    {"VIPorth", Loadings, "M4,1,2,3", "GetOPLSOrthVIP(4, 2)", "GetVIPColumnIDs(4, 2)"},
    {"VIPpred", Loadings, "M4,1,2,3", "GetOPLSPredVIP(4, 2)", "GetVIPColumnIDs(4, 2)"},
    {"XObs", Loadings, "M2,1,2,3,1,0", "GetXObs(2, true, false, [2], 2)", "GetXObsColumnIDs(2, 2)"},
    {"XObsPred", Loadings, "M2,1,2,3,1,0", "GetXObsPred(2, 1, 1, 0, [2], 2)", "GetXObsPredColumnIDs(2, 2)"},
    {"XObsPred", Loadings, "M4,1,2,3,1,0", "GetXObsPred(4, 1, 1, 0, [2], 2)", "GetXObsPredColumnIDs(4, 2)"},
    {"XObsPredPS", Loadings, "M2,1,2,3,1,0", "GetXObsPredPS(2, 1, 1, 0, [2], 2)", "GetXObsPredPSColumnIDs(2, 2)"},
    {"XObsPredPS", Loadings, "M4,1,2,3,1,0", "GetXObsPredPS(4, 1, 1, 0, [2], 2)", "GetXObsPredPSColumnIDs(4, 2)"},
    {"XObsRes", Loadings, "M2,1,2,3,1,0", "GetXObsRes(2, 1, true, false, [2], 2)", "GetXObsResColumnIDs(2, 2)"},
    {"XObsRes", Loadings, "M4,1,2,3,1,0", "GetXObsRes(4, 1, true, false, [2], 2)", "GetXObsResColumnIDs(4, 2)"},
    {"XObsResPS", Loadings, "M2,1,2,3,1,0", "GetXObsResPS(2, 1, true, false, [2], 2)", "GetXObsResPSColumnIDs(2, 2)"},
    {"XObsResPS", Loadings, "M4,1,2,3,1,0", "GetXObsResPS(4, 1, true, false, [2], 2)", "GetXObsResPSColumnIDs(4, 2)"},
    {"XVar", Scores, "M2,1,2,3,1,0", "GetXVar(2, true, false, [{1 2 0 0}], -1)", "GetXVarColumnIDs(2, -1)"},
    {"XVarPred", Scores, "M2,1,2,3,1,0", "GetXVarPred(2, 1, 1, 0, [{1 2 0 0}])", "GetXVarPredColumnIDs(2)"},
    {"XVarPred", Scores, "M4,1,2,3,1,0", "GetXVarPred(4, 1, 1, 0, [{1 2 0 0}])", "GetXVarPredColumnIDs(4)"},
    {"XVarPredPS", Scores, "M2,1,2,3,1,0", "GetXVarPredPS(2, 1, 1, 0, [{1 2 0 0}])", "GetXVarPredPSColumnIDs(2)"},
    {"XVarPredPS", Scores, "M4,1,2,3,1,0", "GetXVarPredPS(4, 1, 1, 0, [{1 2 0 0}])", "GetXVarPredPSColumnIDs(4)"},
    {"XVarPS", Scores, "M2,1,2,3,1,0", "GetXVarPS(2, true, false, [{1 2 0 0}], -1)", "GetXVarPSColumnIDs(2, -1)"},
    {"XVarRes", Scores, "M2,1,2,3,1,0", "GetXVarRes(2, 1, true, false, [{1 2 0 0}], 2)", "GetXVarResColumnIDs(2)"},
    {"XVarRes", Scores, "M4,1,2,1,2,3,1,0", "GetXVarResO2PLS(4, 1, 2, 1, true, false, [{1 2 0 0}], 2)", "GetXVarResO2PLSColumnIDs(4)"},
    {"XVarResPS", Scores, "M2,1,2,3,1,0", "GetXVarResPS(2, 1, true, false, [{1 2 0 0}], 2)", "GetXVarResPSColumnIDs(2)"},
    {"XVarResPS", Scores, "M4,1,2,3,1,0", "GetXVarResPS(4, 1, true, false, [{1 2 0 0}], 2)", "GetXVarResPSColumnIDs(4)"},
    {"XVarResPSSt", Scores, "M2,1,2,3,1,0", "GetXVarResPS(2, 1, true, false, [{1 2 0 0}], 1)", "GetXVarResPSColumnIDs(2)"},
    {"XVarResPSSt", Scores, "M4,1,2,3,1,0", "GetXVarResPS(4, 1, true, false, [{1 2 0 0}], 1)", "GetXVarResPSColumnIDs(4)"},
    {"XVarResSt", Scores, "M2,1,2,3,1,0", "GetXVarRes(2, 1, true, false, [{1 2 0 0}], 1)", "GetXVarResColumnIDs(2)"},
    {"XVarResSt", Scores, "M4,1,2,3,1,0", "GetXVarRes(4, 1, true, false, [{1 2 0 0}], 1)", "GetXVarResColumnIDs(4)"},
    {"XVarResYRelated", Scores, "M4,1,2,3,1,0", "GetXVarResO2PLS(4, -1, 0, 0, true, false, [{1 2 0 0}], 2)", "GetXVarResO2PLSColumnIDs(4)"},
    {"YObs", Loadings, "M2,1,2,3,1,0", "GetYObs(2, true, false, [2])", "GetYObsColumnIDs(2)"},
    {"YObsRes", Loadings, "M2,1,2,3,1,0", "GetYObsRes(2, 1, true, false, [2])", "GetYObsResColumnIDs(2)"},
    {"YObsResPS", Loadings, "M2,1,2,3,1,0", "GetYObsResPS(2, 1, true, false, [2])", "GetYObsResPSColumnIDs(2)"},
    {"YObsResPS", Loadings, "M4,1,2,3,1,0", "GetYObsResPS(4, 1, true, false, [2])", "GetYObsResPSColumnIDs(4)"},
    {"YPred", Scores, "M2,1,2,3,1,0", "GetYPred(2, 1, 1, 0, [{1 5 0 0}], -1)", "GetYPredColumnIDs(2, -1)"},
    {"YPred", Scores, "M4,1,2,3,1,0", "GetYPred(4, 1, 1, 0, [{1 5 0 0}], -1)", "GetYPredColumnIDs(4, -1)"},
    {"YPredcv", Scores, "M2,1,2,3", "GetYPredCV(2, 1, [{1 5 0 0}])", "GetYPredCVColumnIDs(2)"},
    {"YPredcv", Scores, "M4,1,2,3", "GetYPredCV(4, 1, [{1 5 0 0}])", "GetYPredCVColumnIDs(4)"},
    {"YPredErrcv", Scores, "M2,1,2,3", "GetYPredCVErr(2, 1, [{1 5 0 0}])", "GetYPredCVErrColumnIDs(2)"},
    {"YPredErrcv", Scores, "M4,1,2,3", "GetYPredCVErr(4, 1, [{1 5 0 0}])", "GetYPredCVErrColumnIDs(4)"},
    {"YPredErrcvSE", PerComponent, "M2,1,2,3", "GetYPredCVErrSE(2, [{1 5 0 0}])", "GetYPredCVErrSEColumnIDs(2)"},
    {"YPredPS", Scores, "M2,1,2,3,1,0", "GetYPredPS(2, 1, 1, 0, [{1 5 0 0}], -1)", "GetYPredPSColumnIDs(2, -1)"},
    {"YPredPS", Scores, "M4,1,2,3,1,0", "GetYPredPS(4, 1, 1, 0, [{1 5 0 0}], -1)", "GetYPredPSColumnIDs(4, -1)"},
    {"YPredPSConfInt+", Scores, "M2,1,2,3,1,0", "GetYPredPSCVConfIntPlus(2, 1, 1, 0, [{1 5 0 0}], -1)", "GetYPredPSColumnIDs(2, -1)"},
    {"YPredPSConfInt+", Scores, "M4,1,2,3,1,0", "GetYPredPSCVConfIntPlus(4, 1, 1, 0, [{1 5 0 0}], -1)", "GetYPredPSColumnIDs(4, -1)"},
    {"YPredPSConfInt-", Scores, "M2,1,2,3,1,0", "GetYPredPSCVConfIntMinus(2, 1, 1, 0, [{1 5 0 0}], -1)", "GetYPredPSColumnIDs(2, -1)"},
    {"YPredPSConfInt-", Scores, "M4,1,2,3,1,0", "GetYPredPSCVConfIntMinus(4, 1, 1, 0, [{1 5 0 0}], -1)", "GetYPredPSColumnIDs(4, -1)"},
    {"YPredPScv", Scores, "M2,1,2,3,1,0", "GetYPredPSCV(2, 3, {1 5 0 0}, 1, 0, [1])", "GetYPredPSCVColumnIDs(2)"},
    {"YPredPScv", Scores, "M4,1,2,3,1,0", "GetYPredPSCV(4, 3, {1 5 0 0}, 1, 0, [1])", "GetYPredPSCVColumnIDs(4)"},
    {"YPredPScvSE", Scores, "M2,1,2,3", "GetYPredPScvSE(2, 1, [{1 5 0 0}])", "GetYPredPScvSEColumnIDs(2)"},
    {"YPredPScvSE", Scores, "M4,1,2,3", "GetYPredPScvSE(4, 1, [{1 5 0 0}])", "GetYPredPScvSEColumnIDs(4)"},
    {"YRelatedProfile", Loadings, "M4,1,2,3", "GetYRelatedProfiles(4, [{1 5 0 0}])", "GetYRelatedProfilesColumnIDs(4)"},
    {"YVar", Scores, "M2,1,2,3,1,0", "GetYVar(2, true, false, [{1 5 0 0}], -1)", "GetYVarColumnIDs(2, -1)"},
    {"YVarDS", Scores, "M2,1,2,3", "GetYVarUntreated(2, [{1 5 0 0}], -1)", "GetYVarColumnIDs(2, -1)"},
    {"YVarDSPS", Scores, "M2,1,2,3", "GetYVarUntreatedPS(2, [{1 5 0 0}], -1)", "GetTPSColumnIDs(2, -1)"},
    {"YVarPS", Scores, "M2,1,2,3,1,0", "GetYVarPS(2, true, false, [{1 5 0 0}], -1, true)", "GetYVarPSColumnIDs(2, -1)"},
    {"YVarRes", Scores, "M2,1,2,3,1,0", "GetYVarRes(2, 1, true, false, [{1 5 0 0}], 2)", "GetYVarResColumnIDs(2)"},
    {"YVarRes", Scores, "M4,1,2,3,1,0", "GetYVarRes(4, 1, true, false, [{1 5 0 0}], 2)", "GetYVarResColumnIDs(4)"},
    {"YVarResPS", Scores, "M2,1,2,3,1,0", "GetYVarResPS(2, 1, true, false, [{1 5 0 0}], 2)", "GetYVarResPSColumnIDs(2)"},
    {"YVarResPS", Scores, "M4,1,2,3,1,0", "GetYVarResPS(4, 1, true, false, [{1 5 0 0}], 2)", "GetYVarResPSColumnIDs(4)"},
    {"YVarResPSSt", Scores, "M2,1,2,3,1,0", "GetYVarResPS(2, 1, true, false, [{1 5 0 0}], 1)", "GetYVarResPSColumnIDs(2)"},
    {"YVarResPSSt", Scores, "M4,1,2,3,1,0", "GetYVarResPS(4, 1, true, false, [{1 5 0 0}], 1)", "GetYVarResPSColumnIDs(4)"},
    {"YVarResSt", Scores, "M2,1,2,3,1,0", "GetYVarRes(2, 1, true, false, [{1 5 0 0}], 1)", "GetYVarResColumnIDs(2)"},
    {"CVGroups", Scores, "M2,0,0,0", "GetCVGroups(2)", "GetCVGroupsColumnIDs(2)"},
    {"Date/Time", Scores, "M2,0,0,0", "GetDateTimeVariable(2)", "GetDateTimeVariableColumnIDs(2)"},
    {"Date/Time-PS", Scores, "M2,0,0,0", "GetDateTimePSVariable(2)", "GetDateTimePSVariableColumnIDs(2)"},
    {"LocalCentering", Scores, "M2,0,0,0", "GetModelLocalCentering(2)", "GetModelLocalCenteringColumnIDs(2)"},
    {"LocalCenteringPS", Scores, "M2,0,0,0", "GetModelLocalCentering(2)", "GetModelLocalCenteringColumnIDs(2)"},
    {"SourceOfVarNum", Loadings, "M1,0,0,0", "GetPColumnIDs(1, 2)", "GetPColumnIDs(1, 2)"},
    {"SourceOfVarNum", Loadings, "M2,0,0,0", "GetWStarCColumnIDs(2, 2)", "GetWStarCColumnIDs(2, 2)"},
    {"Xavg", Loadings, "M2,0,0,0", "GetXOffsets(2, 2)", "GetXOffsetsColumnIDs(2, 2)"},
    {"Xws", Loadings, "M2,0,0,0", "GetXWeights(2, 2)", "GetXWeightsColumnIDs(2, 2)"},
    {"Yavg", Loadings, "M2,0,0,0", "GetYOffsets(2)", "GetYOffsetsColumnIDs(2)"},
    {"Yws", Loadings, "M2,0,0,0", "GetYWeights(2)", "GetYWeightsColumnIDs(2)"},
};
// clang-format on

TEST(Values, AskTheirOperationsWithTheirArguments) {
    ExpectCalls(cases);
}

TEST(Values, ListsStandBehindTheFlags) {
    EXPECT_EQ(CallOf("XVar", Scores, "M2,0,-1,0,0,1,3,1"), "GetXVar(2, false, true, [{1 3 0 0}, {1 1 0 0}], -1)");
    // Numbers that no term has are left out, and without any term there is nothing to ask.
    EXPECT_EQ(CallOf("XVarPred", Scores, "M2,1,-1,0,1,1,9,2"), "GetXVarPred(2, 1, 1, 1, [{1 2 0 0}])");
    for (char const *args : {"M2,0,-1,0,1,1", "M2,0,0,0,1,1", "M2,0,4,0,1,1", "M2,0,1,0"})
        EXPECT_EQ(CallOf("XVar", Scores, args), "") << args;
}

TEST(Values, ComponentsBelowTheFirstGiveNothing) {
    struct {
        char const *name;
        ProjectVector::VectorTypeEnum type;
        char const *args;
        bool nothing;
    } const rows[] = {{"DModX", Scores, "M2,0,0,0", false},           {"DModX", Scores, "M2,-1,0,0", true},
                      {"Coeff", Loadings, "M2,0,1,0", true},          {"Coeff", Loadings, "M3,0,1,0", false},
                      {"YPred", Scores, "M2,0,1,0,1,1", false},       {"YPred", Scores, "M2,-1,1,0,1,1", true},
                      {"XVarRes", Scores, "M4,-1,1,1,1,0,1,1", true}, {"XVarRes", Scores, "M4,0,0,0,1,0,1,1", false}};
    for (auto const &row : rows)
        EXPECT_EQ(CallOf(row.name, row.type, row.args).empty(), row.nothing) << row.name << ' ' << row.args;
}

TEST(Values, ResponsesThatAreNotThereAreErrors) {
    for (char const *args : {"M2,1,0,0,1,1", "M2,1,3,0,1,1", "M2,1,-1,0,1,1"})
        EXPECT_THROW(CallOf("YPred", Scores, args), NCError) << args;
    EXPECT_EQ(CallOf("YPred", Scores, "M1,1,1,0,1,1"), "no vector");
}

TEST(Values, StatusDecidesHowCoefficientsAreResolved) {
    auto const project = FourModels();
    ProjectVector const *const vector = FindFor(*project, "CoeffCS", Loadings, "M2");
    for (auto const &[status, flag] : {std::pair("0", "2"), {"1", "0"}, {"2", "1"}, {"7", "0"}}) {
        std::string const args = std::string("M2,1,1,0,") + status;
        EXPECT_EQ(CallOf("CoeffCS", Loadings, args.c_str()),
                  std::string("GetCoefficientsCenterdScaled(2, 1, [{1 4 0 0}], 2, ") + flag + ")");
        vector->CreateColumnIDsRaw(project, args.c_str());
        EXPECT_EQ(project->source.Take(), std::string("GetCoefficientsCenterdScaledColumnIDs(2, 2, ") + flag + ")");
    }
}

TEST(Values, OrthogonalModelsNeedComponents) {
    auto const project = MakeRecordingProject();
    project->AddModel(ModelTypeE::OPLS, 0, 0, 0, 3, 2);
    auto const info = project->GetModelInfo(1);
    for (auto const &[name, type, valid] : {std::tuple("Coeff", Loadings, false),
                                            {"VIP", Loadings, false},
                                            {"T2Range", Scores, false},
                                            {"DModX", Scores, true}})
        EXPECT_EQ(FindFor(*project, name, type, "M1")->IsValidModel(*project, *info), valid) << name;
}

} // namespace
