#pragma once

#include "model/VLElement.h"

#include <memory>

// A minimal concrete shape for tests of the records that hold shapes.
class TestShape : public VLElement {
public:
    explicit TestShape(uint16_t type) : _type(type) {}
    uint16_t shapeType() const override { return _type; }
    std::shared_ptr<VLShape> copy() const override { return std::make_shared<TestShape>(*this); }

private:
    uint16_t _type;
};
