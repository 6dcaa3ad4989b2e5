#pragma once

#include "app/Listing.h"
#include "app/PlotScript.h"
#include "engine/Project.h"

#include <string>
#include <vector>

// A model of a tree of PLS models, and what its components explain and predict of Y; NaN where there is nothing.
struct TreeRow {
    engine::TreeNode node;
    double r2y = 0, q2 = 0;
};

// All models of the tree that a model is in, each before those below it. NCError for a model that is in none.
std::vector<TreeRow> ReadTree(engine::Project const &project, int model);

// One row for each model: its observations, how many of them are below its cut, the weight of the cut and t_1 there,
// R2Y and Q2. As text the models are indented, otherwise model above, depth and side are told.
Listing TreeListing(std::vector<TreeRow> const &tree, Format format);

// The script that makes gnuplot draw a tree: a box for each model, that of all observations on top, parts with smaller
// t_1 to the left. The boxes of models that are not cut are filled.
std::string TreeScript(std::vector<TreeRow> const &tree, PlotStyle const &style);
