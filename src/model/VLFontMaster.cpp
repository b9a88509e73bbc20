#include "model/VLFontMaster.h"

#include "model/VLMetricValue.h"
#include "model/VLUserData.h"
#include "platform/UUID.h"

std::shared_ptr<VLFontMaster> VLFontMaster::init()
{
    auto master = std::make_shared<VLFontMaster>();
    master->_id = newUUIDString();
    master->_name = "Regular";
    master->_ascender = 800;
    master->_descender = -200;
    master->_capHeight = 700;
    master->_xHeight = 500;
    master->_italicAngle = 0;
    return master;
}

std::shared_ptr<VLFontMaster> VLFontMaster::initFast()
{
    return std::make_shared<VLFontMaster>();
}

void VLFontMaster::setUserData_forKey(const Value& value, const std::string& key)
{
    VLSetUserData(_userData, value, key);
}

namespace {

VLFontMaster::Values copiedValues(const VLFontMaster::Values& values, VLFontMaster* parent)
{
    VLFontMaster::Values copies;
    for (const auto& [metricId, value] : values) {
        auto copy = value->copy();
        copy->setParent(parent);
        copies[metricId] = copy;
    }
    return copies;
}

} // namespace

std::shared_ptr<VLFontMaster> VLFontMaster::copy() const
{
    auto master = initFast();
    master->_id = _id;
    master->_name = _name;
    master->_iconName = _iconName;
    master->_userData = _userData;
    master->_visible = _visible;
    master->_metricValues = copiedValues(_metricValues, master.get());
    master->_axesValues = copiedValues(_axesValues, master.get());
    master->copyCustomParametersFrom(*this);
    return master;
}
