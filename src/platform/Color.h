#pragma once

#include <array>
#include <cstddef>

// A colour in one of the platform's spaces. The components are kept as given so that a colour
// read from a document compares equal to the one that was written; drawing uses the RGBA form.
class Color {
public:
    enum class Space { DeviceWhite, CalibratedWhite, CalibratedRGB, DeviceCMYK };

    static Color blackColor() { return colorWithDeviceWhite_alpha(0.0, 1.0); }
    static Color colorWithDeviceWhite_alpha(double white, double alpha);
    static Color colorWithCalibratedWhite_alpha(double white, double alpha);
    static Color colorWithCalibratedRed_green_blue_alpha(double red, double green, double blue, double alpha);
    static Color colorWithDeviceCyan_magenta_yellow_black_alpha(double cyan, double magenta, double yellow,
                                                               double black, double alpha);

    Space space() const { return _space; }
    // The components in the order of the space's constructor, alpha last.
    const std::array<double, 5>& components() const { return _components; }
    int numberOfComponents() const;
    double alphaComponent() const { return _components[static_cast<size_t>(numberOfComponents() - 1)]; }
    std::array<double, 4> rgba() const;

    // Makes this the fill colour of the current graphics context.
    void set() const;

    friend bool operator==(const Color&, const Color&) = default;

private:
    Color(Space space, std::array<double, 5> components) : _space(space), _components(components) {}

    Space _space;
    std::array<double, 5> _components;
};
