#pragma once

#include "platform/export.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace engine {

// How many observations of each class are taken for which. Classes count from 0.
class DATASERIES_API ConfusionTable {
public:
    explicit ConfusionTable(std::size_t classes) : m_classes(classes), m_counts(classes * classes) {}

    void Add(std::size_t trueClass, std::size_t predictedClass) { ++m_counts[trueClass * m_classes + predictedClass]; }

    std::size_t Classes() const { return m_classes; }
    int Count(std::size_t trueClass, std::size_t predictedClass) const {
        return m_counts[trueClass * m_classes + predictedClass];
    }
    int SizeOf(std::size_t trueClass) const;
    int Size() const;
    // Those that are taken for another class than theirs.
    int Misclassified() const;

    // The share of the observations of a class that are taken for it, and that of all others that are not (Fawcett
    // 2006); NaN when there are none.
    double Sensitivity(std::size_t ofClass) const;
    double Specificity(std::size_t ofClass) const;

private:
    int TakenFor(std::size_t predictedClass) const;

    std::size_t m_classes;
    std::vector<int> m_counts; // row after row, one for each true class
};

// The receiver operating characteristic of a score that is to be large for one class (Fawcett 2006): the shares of its
// observations and of all others at or above a threshold that falls from infinity. Observations of the same score come
// at once, which makes a slanted step.
struct RocCurve {
    struct Point {
        double falsePositives = 0;
        double truePositives = 0;

        bool operator==(Point const &) const = default;
    };

    std::vector<Point> points; // from (0, 0) to (1, 1); none when the class or the others have no observation
    // Below it: the chance that an observation of the class has a larger score than another one, equal scores counting
    // half (Mann & Whitney 1947). NaN without points.
    double area = 0;
};

// Scores that are NaN are left out.
DATASERIES_API RocCurve RocOf(std::span<double const> scores, std::vector<bool> const &isOfClass);

// Observations whose class is known and that have a prediction. The predicted class is that with the largest predicted
// Y.
struct ClassPredictions {
    ConfusionTable table;
    std::vector<RocCurve> curves; // of each class against the rest; of two classes that of the first alone
};

// How well a discriminant model tells classes apart.
struct Classification {
    std::vector<std::string> classes;
    ClassPredictions fitted;
    std::optional<ClassPredictions> crossValidated; // each observation by the round that left it out
    std::optional<ClassPredictions> predicted;      // the current prediction set, where it tells classes
};

} // namespace engine
