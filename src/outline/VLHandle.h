#pragma once

#include "model/VLElement.h"

#include <memory>

// A place a hint refers to that is no node, such as a side-bearing position of the layer; its
// parent is the object it belongs to.
class VLHandle : public VLElement {
public:
    static constexpr int LeftSideBearing = 1001;
    static constexpr int RightSideBearing = 1002;

    VLHandle(Point position, int flag) : _flag(flag) { setPositionFast(position); }
    std::shared_ptr<VLShape> copy() const override { return std::make_shared<VLHandle>(*this); }
    int flag() const { return _flag; }

private:
    int _flag;
};
