#include "app/Tree.h"

#include "app/ScriptText.h"
#include "app/Summary.h"
#include "platform/project/GetProjectData.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

namespace {

double ShownOr(bool isShown, double value) {
    return isShown ? value : std::numeric_limits<double>::quiet_NaN();
}

char const *SideOf(engine::TreeNode const &node) {
    return node.parent == 0 ? "" : node.isAbove ? "above" : "below";
}

// Where boxes stand: those that are not cut side by side, at 0, 1, 2, ..., any other in the middle above its parts.
std::map<int, double> PlacesOf(std::vector<TreeRow> const &tree) {
    std::map<int, double> places;
    std::map<int, double> sums; // of both parts
    double next = 0;
    for (TreeRow const &row : tree)
        if (row.node.below == 0)
            places[row.node.model] = next++;
    // Each model stands before those below it.
    for (auto row = tree.rbegin(); row != tree.rend(); ++row) {
        if (row->node.below > 0)
            places[row->node.model] = sums[row->node.model] / 2;
        sums[row->node.parent] += places[row->node.model];
    }
    return places;
}

std::string Rounded(char const *name, double value) {
    constexpr double hundred = 100;
    return std::isfinite(value) ? std::string(name) + " " + Number(std::round(value * hundred) / hundred) : "";
}

class Script {
public:
    Script(std::vector<TreeRow> const &tree, PlotStyle const &style) : m_tree(tree), m_places(PlacesOf(tree)) {
        int deepest = 0;
        double leaves = 0;
        for (TreeRow const &row : tree) {
            deepest = std::max(deepest, row.node.depth);
            leaves += row.node.below == 0 ? 1 : 0;
        }
        constexpr double pixelsPerPoint = 14; // that a line of text of a box takes, in points of its letters
        m_points = std::clamp(static_cast<int>(style.width / leaves / pixelsPerPoint), 5, 11);
        m_text = ScriptHead(style) +
                 "unset border\nunset tics\nunset grid\nunset key\nunset xzeroaxis\nset xrange [-0.6:" +
                 Number(leaves - 0.4) + "]\nset yrange [" + Number(-deepest - 0.5) + ":0.5]\n";
    }

    std::string Write() {
        for (TreeRow const &row : m_tree)
            WriteLine(row.node);
        int object = 0;
        for (TreeRow const &row : m_tree)
            WriteBox(row, ++object);
        return m_text + "plot NaN notitle\n";
    }

private:
    static constexpr double halfWidth = 0.45;
    static constexpr double halfHeight = 0.3;

    std::string At(engine::TreeNode const &node, double above) const {
        return Number(m_places.at(node.model)) + "," + Number(above - node.depth);
    }

    // To the model above.
    void WriteLine(engine::TreeNode const &node) {
        auto const parent = std::ranges::find(m_tree, node.parent, [](TreeRow const &row) { return row.node.model; });
        if (parent != m_tree.end())
            m_text += "set arrow from " + At(parent->node, -halfHeight) + " to " + At(node, halfHeight) +
                      " nohead lc rgb '#707070' lw 1\n";
    }

    void WriteBox(TreeRow const &row, int object) {
        bool const isCut = row.node.below > 0;
        double const place = m_places.at(row.node.model);
        m_text += "set object " + std::to_string(object) + " rectangle from " + Number(place - halfWidth) + "," +
                  Number(-row.node.depth - halfHeight) + " to " + Number(place + halfWidth) + "," +
                  Number(halfHeight - row.node.depth) + " fillcolor rgb '" + (isCut ? "#ffffff" : "#e3ecf6") +
                  "' fillstyle solid border lc rgb '#1f5fa8'\n";
        std::vector<std::string> const lines = {
            "M" + std::to_string(row.node.model), std::to_string(row.node.observations) + " obs.",
            Rounded("R2Y", row.r2y), Rounded("Q2", row.q2), isCut ? Rounded("cut at t1 =", row.node.score) : ""};
        auto const count = std::ranges::count_if(lines, [](std::string const &line) { return !line.empty(); });
        double line = 0;
        for (std::string const &text : lines)
            if (!text.empty()) {
                double const above = halfHeight * (1 - (2 * line++ + 1) / static_cast<double>(count));
                m_text += "set label " + Quoted(text) + " at " + At(row.node, above) + " center front font '," +
                          std::to_string(m_points) + "' textcolor rgb '#303030'\n";
            }
    }

    std::vector<TreeRow> const &m_tree;
    std::map<int, double> m_places;
    int m_points = 0;
    std::string m_text;
};

} // namespace

std::vector<TreeRow> ReadTree(engine::Project const &project, int model) {
    GetProjectData const statistics(project);
    std::vector<TreeRow> tree;
    for (engine::TreeNode const &node : project.TreeOf(model))
        tree.push_back({node, OfAllComponents(statistics.GetR2YCum(node.model)),
                        OfAllComponents(statistics.GetQ2Cum(node.model))});
    return tree;
}

Listing TreeListing(std::vector<TreeRow> const &tree, Format format) {
    bool const isIndented = format == Format::Text;
    std::vector<std::string> headings = {"model"};
    if (!isIndented)
        headings.insert(headings.end(), {"model_above", "depth"});
    headings.insert(headings.end(), {"side", "observations", "below_cut", "weight", "t1", "R2Y(cum)", "Q2(cum)"});
    Listing listing(std::move(headings));
    Listing::Cell const nothing(std::numeric_limits<double>::quiet_NaN());
    for (auto const &[node, r2y, q2] : tree) {
        bool const isCut = node.below > 0;
        std::vector<Listing::Cell> row;
        if (isIndented)
            row.emplace_back(std::string(2 * static_cast<std::size_t>(node.depth), ' ') + std::to_string(node.model));
        else
            row = {node.model, node.parent > 0 ? Listing::Cell(node.parent) : nothing, node.depth};
        row.insert(row.end(), {SideOf(node), node.observations, isCut ? Listing::Cell(node.below) : nothing,
                               ShownOr(isCut, node.weight), ShownOr(isCut, node.score), r2y, q2});
        listing.Add(std::move(row));
    }
    return listing;
}

std::string TreeScript(std::vector<TreeRow> const &tree, PlotStyle const &style) {
    return Script(tree, style).Write();
}
