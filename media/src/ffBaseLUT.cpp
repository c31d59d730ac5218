#include "ffBaseLUT.h"

#include "ffIOEx.h"
#include "ixLineConvert.h"
#include "ixReadGuard.h"
#include "ixWriteGuard.h"
#include "osFile.h"
#include "osFileEx.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fmt/format.h>
#include <sstream>
#include <vector>

namespace Qv {

namespace {

class IdentityLUT : public FfBaseLUT {
public:
    bool applies() const override { return false; }

protected:
    void applyRow(CoRgbaColorTyped<float>*, int) const override {}
};

class SrgbEncodeLUT : public FfBaseLUT {
protected:
    void applyRow(CoRgbaColorTyped<float>* colours, int count) const override {
        for (int i = 0; i < count; ++i) {
            colours[i].r = encode(colours[i].r);
            colours[i].g = encode(colours[i].g);
            colours[i].b = encode(colours[i].b);
        }
    }

private:
    static float encode(float v) {
        return v <= 0.0031308f ? 12.92f * v : 1.055f * std::pow(v, 1.0f / 2.4f) - 0.055f;
    }
};

class TableLUT : public FfBaseLUT {
public:
    explicit TableLUT(std::array<std::vector<float>, 3> curves) : _curves(std::move(curves)) {}

protected:
    void applyRow(CoRgbaColorTyped<float>* colours, int count) const override {
        for (int i = 0; i < count; ++i) {
            colours[i].r = lookUp(_curves[0], colours[i].r);
            colours[i].g = lookUp(_curves[1], colours[i].g);
            colours[i].b = lookUp(_curves[2], colours[i].b);
        }
    }

private:
    static float lookUp(std::vector<float> const& curve, float v) {
        float const last = static_cast<float>(curve.size() - 1);
        // NaN becomes 0 with the clamp written as min then max.
        float const position = std::max(0.0f, std::min(v * last, last));
        std::size_t const index = std::min(static_cast<std::size_t>(position), curve.size() - 2);
        float const fraction = position - static_cast<float>(index);
        return curve[index] + (curve[index + 1] - curve[index]) * fraction;
    }

    std::array<std::vector<float>, 3> _curves;
};

} // namespace

IxTile FfBaseLUT::process(IxTile const& tile) const {
    IxPixelFormat const& format = tile.getPixelFormat();
    if (!applies() || format.getComps() == IxPixelFormat::ALPHA)
        return tile;
    IxTile const out(format, tile.getPixelRegion(), tile.getFillColor());
    if (tile.isEmpty())
        return out;
    GeRectangle<int> const& region = tile.getPixelRegion();
    std::vector<CoRgbaColorTyped<float>> row(static_cast<std::size_t>(region.getWidth()));
    IxReadGuard const src(tile);
    IxWriteGuard const dst(out);
    ixVisitDepth(format, "FfBaseLUT::process", [&](auto component) {
        ixVisitComps(format, [&](auto comps) {
            using T = decltype(component);
            constexpr int N = comps();
            for (int y = region.y1; y < region.y2; ++y) {
                ixLineToRgba<N>(src.getLineAs<T>(y), row.data(), region.getWidth());
                applyRow(row.data(), region.getWidth());
                ixLineFromRgba<N>(row.data(), dst.getLineAs<T>(y), region.getWidth());
            }
        });
    });
    return out;
}

RCStrongPtr<FfBaseLUT> FfBaseLUT::createIdentity() {
    return RCStrongPtr<FfBaseLUT>(new IdentityLUT);
}

RCStrongPtr<FfBaseLUT> FfBaseLUT::createSrgbEncode() {
    return RCStrongPtr<FfBaseLUT>(new SrgbEncodeLUT);
}

RCStrongPtr<FfBaseLUT> FfBaseLUT::readTable(OsFilePath const& path) {
    std::string text;
    try {
        text = OsFile(path).readText();
    } catch (OsFileEx::ExFileNotFound const&) {
        throw FfIOEx::ExFileNotFound(__FILE__, __LINE__, path.toString());
    } catch (OsFileEx::ExFileError const& error) {
        throw FfIOEx::ExReadError(__FILE__, __LINE__, path.toString(), error.getReason());
    }
    std::array<std::vector<float>, 3> curves;
    std::istringstream lines(text);
    std::string line;
    std::size_t columns = 0;
    for (int number = 1; std::getline(lines, line); ++number) {
        line = line.substr(0, line.find('#'));
        std::istringstream fields(line);
        std::vector<float> values;
        std::string field;
        while (fields >> field) {
            std::size_t used = 0;
            float value = 0.0f;
            try {
                value = std::stof(field, &used);
            } catch (std::exception const&) {
                used = 0;
            }
            if (used != field.size() || !std::isfinite(value))
                throw FfIOEx::ExReadError(__FILE__, __LINE__, path.toString(),
                                          fmt::format("line {}: \"{}\" is not a number", number, field));
            values.push_back(value);
        }
        if (values.empty())
            continue;
        if (columns == 0)
            columns = values.size();
        if ((values.size() != 1 && values.size() != 3) || values.size() != columns)
            throw FfIOEx::ExReadError(__FILE__, __LINE__, path.toString(),
                                      fmt::format("line {}: {} numbers where every line has {}", number,
                                                  values.size(), columns == 3 ? 3 : 1));
        for (std::size_t c = 0; c < 3; ++c)
            curves[c].push_back(values[columns == 3 ? c : 0]);
    }
    if (curves[0].size() < 2)
        throw FfIOEx::ExReadError(__FILE__, __LINE__, path.toString(), "a table needs at least two entries");
    return RCStrongPtr<FfBaseLUT>(new TableLUT(std::move(curves)));
}

} // namespace Qv
