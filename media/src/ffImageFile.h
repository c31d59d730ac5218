#pragma once
// The image file of the formats that the image library reads and writes: a
// reader when opened, a writer when created.
#include "ffImageReader.h"
#include "ffImageWriter.h"
#include "piImageFile.h"

#include <memory>

namespace Qv {

class FfImageFile : public PiImageFile {
public:
    // Open for reading; throws what FfImageReader throws.
    static RCShdPtr<FfImageFile> open(OsFilePath const& path, FfImageFormatTraits const& traits);
    // Create for writing; throws what FfImageWriter throws.
    static RCShdPtr<FfImageFile> create(OsFilePath const& path, FfImageFormatTraits const& traits);

    void setFormatOptions(std::string const& options) override;
    std::string getFormatOptions() const override;
    void setFormat(ImFormat const& format) override;
    ImFormat getFormat() const override;

    ImLayout getFileLayout() const override;
    int getNbFileChannels() const override;
    std::vector<std::string> getChannelNames() const override;
    void setChannelAssignment(std::vector<int> const& channels) override;
    GeRectangle<int> getMaxRect() const override;
    void setRegion(GeRectangle<int> const& region) override;
    void setMemoryFactory(ImMemory::Factory const& factory) override;
    ImImageConst readStrip() override;
    std::vector<std::pair<std::string, std::string>> getAttributes() const override;

    void setSize(int width, int height) override;
    GeVector2<int> getPreferredBlockSize() const override;
    void writeBlock(ImImageConst const& block) override;
    void close() override;

private:
    FfImageFile(OsFilePath const& path, FfImageFormatTraits const& traits, bool forWriting);
    FfImageReader& reader() const;
    FfImageWriter& writer() const;

    std::string _options;
    std::unique_ptr<FfImageReader> _reader;
    std::unique_ptr<FfImageWriter> _writer;
};

} // namespace Qv
