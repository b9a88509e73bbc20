#include "model/VLLayer.h"

#include "model/VLChildren.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLShape.h"
#include "model/VLUserData.h"
#include "outline/VLAnchor.h"
#include "outline/VLBackgroundImage.h"
#include "outline/VLHint.h"
#include "platform/BezierPath.h"

#include <chrono>
#include <cmath>

double VLAbsoluteTimeGetCurrent()
{
    // 978307200 seconds lie between the Unix epoch and 2001-01-01.
    auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count() - 978307200.0;
}

std::shared_ptr<VLLayer> VLLayer::init()
{
    return std::make_shared<VLLayer>();
}

VLLayer::~VLLayer()
{
    _disableUpdates = true;
}

void VLLayer::setBackgroundImage(std::shared_ptr<VLBackgroundImage> image)
{
    _backgroundImage = std::move(image);
    if (_backgroundImage) _backgroundImage->setParent(shared_from_this());
}

std::shared_ptr<VLFont> VLLayer::font() const
{
    auto owner = glyph();
    return owner ? owner->font() : nullptr;
}

std::shared_ptr<VLFontMaster> VLLayer::associatedFontMasterFast() const
{
    auto owner = font();
    return owner ? owner->fontMasterForId(_associatedMasterId) : nullptr;
}

std::shared_ptr<VLFontMaster> VLLayer::associatedFontMaster() const
{
    auto owner = font();
    if (!owner) return nullptr;
    if (auto master = owner->fontMasterForId(_associatedMasterId)) return master;
    return owner->fontMasterAtIndex(0);
}

void VLLayer::addShapeFast(const std::shared_ptr<VLShape>& shape)
{
    VLAddChild(_shapes, shape, shared_from_this());
}

void VLLayer::addShapes(const Shapes& shapes)
{
    for (const auto& shape : shapes) addShapeFast(shape);
}

void VLLayer::setShapesFast(Shapes shapes)
{
    if (shapes == _shapes) return;
    VLSetChildren(_shapes, std::move(shapes), shared_from_this());
    restoreHints();
}

std::shared_ptr<VLShape> VLLayer::objectInShapesAtIndex(size_t index) const
{
    return index < _shapes.size() ? _shapes[index] : nullptr;
}

long VLLayer::indexOfObjectInShapes(const VLShape* shape) const
{
    for (size_t i = 0; i < _shapes.size(); ++i)
        if (_shapes[i].get() == shape) return static_cast<long>(i);
    return -1;
}

long VLLayer::countOfPaths()
{
    std::lock_guard lock(_monitor);
    if (_numberOfPaths < 0) {
        _numberOfPaths = 0;
        for (const auto& shape : _shapes) _numberOfPaths += shape->shapeType() == VLShapeType::Path;
    }
    return _numberOfPaths;
}

long VLLayer::countOfComponents()
{
    std::lock_guard lock(_monitor);
    if (_numberOfComponents < 0) {
        _numberOfComponents = 0;
        for (const auto& shape : _shapes)
            _numberOfComponents += shape->shapeType() == VLShapeType::Component;
    }
    return _numberOfComponents;
}

void VLLayer::_enumerateShapes_doPaths_doComponents_indexPath_usingBlock(const Shapes& shapes, bool doPaths,
                                                                        bool doComponents,
                                                                        std::vector<size_t>& indexPath,
                                                                        const ShapeBlock& block, bool& stop)
{
    for (size_t i = 0; i < shapes.size() && !stop; ++i) {
        VLShapeType type = shapes[i]->shapeType();
        bool wanted = (doPaths && type == VLShapeType::Path) ||
                      (doComponents && type == VLShapeType::Component);
        if (!wanted) continue;
        indexPath.push_back(i);
        block(shapes[i], indexPath, stop);
        indexPath.pop_back();
    }
}

void VLLayer::enumerateShapesUsingBlock(const ShapeBlock& block) const
{
    std::vector<size_t> indexPath;
    bool stop = false;
    _enumerateShapes_doPaths_doComponents_indexPath_usingBlock(_shapes, true, true, indexPath, block, stop);
}

void VLLayer::enumeratePathsUsingBlock(const ShapeBlock& block) const
{
    std::vector<size_t> indexPath;
    bool stop = false;
    _enumerateShapes_doPaths_doComponents_indexPath_usingBlock(_shapes, true, false, indexPath, block, stop);
}

void VLLayer::enumerateComponentsUsingBlock(const ShapeBlock& block) const
{
    std::vector<size_t> indexPath;
    bool stop = false;
    _enumerateShapes_doPaths_doComponents_indexPath_usingBlock(_shapes, false, true, indexPath, block, stop);
}

void VLLayer::setWidth(double width)
{
    if (auto owner = font()) {
        double grid = owner->gridLength();
        if (grid > 0.001) {
            width = std::round(width / grid) * grid;
            if (grid > 1.0) width = std::round(width);
        }
    }
    if (std::fabs(width - _width) < 0.0001) return;
    if (width < 0) width = 0;
    if (_RSB < 999999) _RSB += width - _width;
    setNeedUpdateShapes();
    _width = width;
    if (_outlines.cachedDecomposedCopy) _outlines.cachedDecomposedCopy->_width = width;
}

bool VLLayer::visible() const
{
    if (_associatedMasterId == _layerId)
        if (auto master = associatedFontMasterFast()) return master->visible();
    return _visible;
}

void VLLayer::setVisible(bool visible)
{
    if (_associatedMasterId == _layerId)
        if (auto master = associatedFontMasterFast()) return master->setVisible(visible);
    _visible = visible;
}

void VLLayer::setUserData_forKey(const Value& value, const std::string& key)
{
    VLSetUserData(_userData, value, key);
}

void VLLayer::setDisableUpdates(bool disable)
{
    if (disable) {
        _hasDisabledUpdates = false;
        _disableUpdates = true;
        return;
    }
    if (_disableUpdates) {
        _disableUpdates = false;
        setNeedUpdateMetrics();
        updateHints();
        // Nothing listens to announcements here, so re-announcing the held keys is only emptying them.
        if (_hasDisabledUpdates) _changedKeys.clear();
    }
    _hasDisabledUpdates = false;
    _ignoreUpdates = false;
}

void VLLayer::ignoreUpdates()
{
    _disableUpdates = true;
    _ignoreUpdates = true;
    _changedKeys.clear();
}

void VLLayer::enableFutureUpdates()
{
    _disableUpdates = false;
    _ignoreUpdates = false;
    _isUpdatingMetrics = false;
    _isAligning = false;
    _changedKeys.clear();
}

void VLLayer::setNeedUpdateShapes()
{
    std::lock_guard lock(_monitor);
    _outlines.flush();
    _numberOfPaths = -1;
    _numberOfComponents = -1;
    _lastUpdate = VLAbsoluteTimeGetCurrent();
}

void VLLayer::setNeedUpdateMetrics()
{
    _LSB = VLUnsetValue;
    _RSB = VLUnsetValue;
    _TSB = VLUnsetValue;
    _BSB = VLUnsetValue;
    _isUpdatingMetrics = false;
    _isAligning = false;
}

std::shared_ptr<VLLayer> VLLayer::copyThin(bool thin) const
{
    std::lock_guard lock(_monitor);
    auto copy = VLLayer::init();
    copy->ignoreUpdates();
    copy->_name = _name;
    copy->_attributes = _attributes;
    Shapes shapes;
    for (const auto& shape : _shapes) shapes.push_back(shape->copy());
    copy->addShapes(shapes);
    Hints hints;
    for (const auto& hint : _hints) hints.push_back(hint->copyHint());
    copy->setHintsFast(std::move(hints));
    for (const auto& anchor : _anchors.allValues()) {
        auto anchorCopy = std::static_pointer_cast<VLAnchor>(anchor->copy());
        anchorCopy->setParent(copy);
        copy->_anchors.setObject_forKey(anchorCopy, anchorCopy->name());
    }
    copy->_layerId = _layerId;
    copy->_associatedMasterId = _associatedMasterId;
    copy->_width = _width;
    copy->_vertWidth = _vertWidth;
    copy->_vertOrigin = _vertOrigin;
    copy->_RSB = _RSB;
    copy->_LSB = _LSB;
    copy->_isAligning = _isAligning;
    copy->_partSelection = _partSelection;
    copy->_colorMarker = _colorMarker.copy(!thin);
    return copy;
}

Value VLLayer::attributeForKey(const std::string& key) const
{
    auto it = _attributes.find(key);
    return it == _attributes.end() ? Value() : it->second;
}

void VLLayer::setAttribute_forKey(const Value& value, const std::string& key)
{
    VLSetUserData(_attributes, value, key);
}

