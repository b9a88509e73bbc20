#include "model/VLFontMaster.h"

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
