#include "outline/VLComponent.h"

#include "model/VLLayer.h"
#include "platform/BezierPath.h"

std::shared_ptr<BezierPath> VLComponent::bezierPath() const
{
    auto layer = componentLayer();
    auto own = layer ? layer->bezierPath() : nullptr;
    // The layer's outline is its own cache, so the component places a copy.
    auto placed = own ? own->copy() : BezierPath::bezierPath();
    placed->transformUsingAffineTransform(transform());
    return placed;
}

Rect VLComponent::fastBoundsTransform(const AffineTransform* transform) const
{
    auto outline = bezierPath();
    if (transform) outline->transformUsingAffineTransform(*transform);
    return outline->bounds();
}
