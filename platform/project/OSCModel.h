#pragma once

// The orthogonal signal correction that a data set was made by. The library passes it on and asks nothing of it.
class OSCModel {
public:
    virtual ~OSCModel() = default;
};
