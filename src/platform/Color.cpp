#include "platform/Color.h"

#include "platform/GraphicsContext.h"

Color Color::colorWithDeviceWhite_alpha(double white, double alpha)
{
    return Color(Space::DeviceWhite, {white, alpha, 0, 0, 0});
}

Color Color::colorWithCalibratedWhite_alpha(double white, double alpha)
{
    return Color(Space::CalibratedWhite, {white, alpha, 0, 0, 0});
}

Color Color::colorWithCalibratedRed_green_blue_alpha(double red, double green, double blue, double alpha)
{
    return Color(Space::CalibratedRGB, {red, green, blue, alpha, 0});
}

Color Color::colorWithDeviceCyan_magenta_yellow_black_alpha(double cyan, double magenta, double yellow,
                                                            double black, double alpha)
{
    return Color(Space::DeviceCMYK, {cyan, magenta, yellow, black, alpha});
}

int Color::numberOfComponents() const
{
    switch (_space) {
    case Space::DeviceWhite:
    case Space::CalibratedWhite: return 2;
    case Space::CalibratedRGB: return 4;
    case Space::DeviceCMYK: return 5;
    }
    return 2;
}

std::array<double, 4> Color::rgba() const
{
    const auto& c = _components;
    switch (_space) {
    case Space::DeviceWhite:
    case Space::CalibratedWhite: return {c[0], c[0], c[0], c[1]};
    case Space::CalibratedRGB: return {c[0], c[1], c[2], c[3]};
    case Space::DeviceCMYK:
        return {(1.0 - c[0]) * (1.0 - c[3]), (1.0 - c[1]) * (1.0 - c[3]), (1.0 - c[2]) * (1.0 - c[3]), c[4]};
    }
    return {0, 0, 0, 1};
}

void Color::set() const
{
    if (GraphicsContext* context = GraphicsContext::current()) context->setFillColor(*this);
}
