#pragma once

#include "platform/containers/NCDataVector.h"
#include "platform/export.h"

#include <string>

// A control chart of a row of values (Montgomery 2009): successive values make subgroups of one size, each of which is
// a point of the chart; what is left over at the end is not charted. A missing value is left out of its subgroup, and a
// subgroup without any value is a missing point. Vectors have one value for each point, -99 where it is missing.
//
// Target, standard deviation and lambda come from the values where they are not set (-99). The standard deviation is
// that of single values within a subgroup; the one of a point is smaller by the root of the subgroup size.
class DATASERIES_API ControlChart {
public:
    // Numbers are kept in saved files.
    enum ControlType : int { Individual = 0, MeanAndRange = 1, MeanAndStdDev = 2, CUSUM = 3, EWMA = 4 };

    // Which exponentially weighted average a chart shows: the one that includes the value itself, or the forecast for
    // it (Hunter 1986).
    enum EWMAType : int { Filtered = 0, Predictive = 1 };

    // Mean and standard deviation of the range of n standard normal values (Tippett 1925), and the mean of their
    // standard deviation, with what follows from them for limits at three standard deviations. n is 2 or more.
    struct DATASERIES_API Constants {
        double d2, d3, c4;

        static Constants Of(int n);
        double D3() const; // limits of ranges, in mean ranges
        double D4() const;
        double B3() const; // limits of standard deviations, in mean standard deviations
        double B4() const;
    };

    // -99 where there is nothing to estimate from.
    struct Limits {
        double lower, centre, upper;
    };

    // A subgroup size below 1 counts as 1.
    ControlChart(ControlType type, NCDataVector<float> const &values, int subgroupSize, EWMAType ewmaType);

    ControlType GetControlType() const { return m_type; }
    EWMAType GetEWMAType() const { return m_ewmaType; }
    int GetSubgroupSize() const { return m_size; }
    int Points() const { return m_mean.Size(); }
    // "Filtered" or "Predictive", translated.
    static std::string ToString(EWMAType type);

    void SetTarget(double target) { m_target = target; }
    void SetStdDevSubgroup(double stdDev) { m_stdDev = stdDev; }
    void SetEWMALambda(double lambda) { m_lambda = lambda; }
    // Allowance and decision interval of the CUSUM, in standard deviations of a point.
    void SetCuSumLimits(double allowance, double interval);
    // Takes over what the other chart has found or was set to: target, standard deviation, mean range, mean standard
    // deviation and lambda. The points stay.
    void ImportLimits(ControlChart const &other);

    // As set, or from the values: the mean of the points; the mean range over d2 for ranges and single values, else the
    // mean standard deviation over c4; and the lambda among 0.05, 0.10, ..., 1 whose forecasts have the least sum of
    // squared errors, the smallest of equals.
    double GetTarget() const;
    double GetStdDevSubgroup() const;
    double GetEWMALambda() const;
    double GetStdDevOfPoint() const;

    // Mean, largest less smallest, and standard deviation of each subgroup; a subgroup with one observed value has no
    // spread. Of single values: the value, the moving range of two successive ones, and that over d2.
    NCDataVector<float> const &GetMeanVector() const { return m_mean; }
    NCDataVector<float> const &GetRangeVector() const { return m_range; }
    NCDataVector<float> const &GetStdDevVector() const { return m_spread; }
    // z_j = lambda x_j + (1 - lambda) z_(j-1) from the target on. A missing point keeps z.
    NCDataVector<float> GetEWMA() const;
    // Sums of the deviations above and below the target that exceed the allowance; neither is ever below 0 (Page 1954).
    // A missing point keeps them.
    NCDataVector<float> GetHighCuSum() const { return CuSum(1); }
    NCDataVector<float> GetLowCuSum() const { return CuSum(-1); }
    NCDataVector<float> GetDevFromTarget() const;

    Limits GetMeanLimits(double deviations = 3) const;
    Limits GetRangeLimits() const;
    Limits GetStdDevLimits() const;
    // Half the width between the limits of the EWMA, which grows from point to point.
    NCDataVector<float> GetEWMAHalfWidths(double deviations = 3) const;
    double GetCuSumInterval() const;

private:
    void Summarise(NCDataVector<float> const &values);
    void SummariseSingles(NCDataVector<float> const &values);
    double ForecastError(double lambda) const;
    NCDataVector<float> CuSum(int sign) const;

    ControlType m_type;
    EWMAType m_ewmaType;
    int m_size;
    NCDataVector<float> m_mean, m_range, m_spread;
    double m_meanRange, m_meanSpread;
    double m_target = -99.0;
    double m_stdDev = -99.0;
    double m_lambda = -99.0;
    double m_allowance = 0.5;
    double m_interval = 5.0;
};
