// Image sequences over real files and movies: the file of an index, the
// fragments a composition keeps (current, older and movie forms) and what
// goes wrong with unknown or foreign files.
#include "assertions.h"
#include "btImageSequence.h"
#include "ffFileFormatMgr.h"
#include "ffIOEx.h"
#include "ffImageWriteUtil.h"
#include "imImage.h"
#include "imMemoryBuffer.h"
#include "imReadGuard.h"
#include "inInitMgr.h"
#include "ixPixelUtil.h"
#include "ixTile.h"
#include "ixWriteGuard.h"
#include "piImageFileDetails.h"
#include "sequencePathTestSupport.h"
#include "xmlElement.h"
#include "xmlEx.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <sstream>
#include <thread>

#ifdef QV_TEST_HAS_FFMPEG
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}
#endif

using namespace Qv;
using namespace Qv::TestHelpers;

namespace {

ImMemory::Factory const& heap() {
    return ImMemoryBuffer::Factory::getInstance();
}

class ImageSequenceTest : public SequenceDirTest {
protected:
    static void SetUpTestSuite() { InInitMgr::getInstance().initializeAll(); }

    // A real image whose width tells which file it is.
    void writeImage(std::string const& name, int width, int height = 2) const {
        IxTile const tile(IxPixelFormat(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32), {0, width, 0, height});
        IxWriteGuard const guard(tile);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                IxPixelUtil::setPixelColor(guard, x, y, {0.2f, 0.4f, 0.6f, 1.0f});
        FfImageWriteUtil::writeTile(OsFilePath(at(name)), tile);
    }

    // The fragment of a root holding `body`, read back.
    static RCStrongPtr<PiImageSequence> load(std::string const& root, std::string const& body) {
        return PiImageSequence::createFromFragment("<" + root + ">" + body + "</" + root + ">");
    }

    static std::string fragmentOf(PiImageSequence const& sequence) {
        std::ostringstream text;
        sequence.write(text);
        return text.str();
    }
};

TEST_F(ImageSequenceTest, anIndexIsAPositionInTheSequenceNotAFrameNumber) {
    writeImage("p.5.png", 5);
    writeImage("p.9.png", 9);
    writeImage("p.100.png", 100);
    RCStrongPtr<PiImageSequence> const sequence =
        BtImageSequence::create(at("p.[5,9,100].png"), BtImageSequence::CHECK_FIRST_FILE);
    EXPECT_FALSE(sequence->isStream());
    EXPECT_EQ(sequence->getNbImages(), 3);
    EXPECT_EQ(sequence->getStartFileNo(), 5);
    EXPECT_EQ(sequence->getSequenceName(), "p");
    for (auto const& [index, width] : {std::pair{0, 5}, {1, 9}, {2, 100}})
        EXPECT_EQ(sequence->getImageForReading(index, heap())->getMaxRect().getWidth(), width) << index;
    // Past the end there is no frame text: the prefix and the suffix alone.
    EXPECT_EQ(sequence->getFileNameAt(3), at("p..png"));
    EXPECT_TRUE(throwsWith<FfIOEx>([&] { sequence->getImageForReading(3, heap()); }, "p..png"));
}

TEST_F(ImageSequenceTest, theSequencesOptionsReachEveryFileItOpens) {
    writeImage("e.1.exr", 4);
    RCStrongPtr<PiImageSequence> const sequence = BtImageSequence::create(at("e.[1].exr"));
    sequence->setFileFormatOptions("compression=zip");
    EXPECT_EQ(sequence->getImageForReading(0, heap())->getFormatOptions(), "compression=zip");
    sequence->setFileFormatOptions("compression=fast");
    EXPECT_THROW(sequence->getImageForReading(0, heap()), FfIOEx::ExBadOptions);
}

TEST_F(ImageSequenceTest, pathsAreRefusedByExtensionAndFilesByWhatTheyAre) {
    struct Refused {
        char const* what;
        std::function<void()> run;
        char const* named;
    };
    writeFile("t.1.png", "not an image");
    for (Refused const& c : std::vector<Refused>{
             {"no format has the extension", [&] { BtImageSequence::create(at("p.[1:3].xyz")); },
              "p.[1:3].xyz"},
             {"no extension at all", [&] { BtImageSequence::create(at("p.[1:3]")); }, "p.[1:3]"},
             {"the clip form too", [&] { BtImageSequence::create(at("p.[1:3].xyz"), 0, 1); }, "p.[1:3].xyz"},
             {"a missing first file, when checked",
              [&] { BtImageSequence::create(at("m.[1:3].png"), BtImageSequence::CHECK_FIRST_FILE); },
              "m.1.png"},
             {"a text file named as an image",
              [&] { BtImageSequence::create(at("t.[1].png"), BtImageSequence::CHECK_FIRST_FILE); },
              "t.1.png"}}) {
        EXPECT_TRUE(throwsWith<FfIOEx>(c.run, c.named)) << c.what;
    }
    EXPECT_THROW(BtImageSequence::create(at("p.[1:3].xyz")), FfIOEx::ExUnknownFormat);

    // Frames still to be rendered may be missing.
    RCStrongPtr<PiImageSequence> const toRender = BtImageSequence::create(
        at("m.[1:3].png"), BtImageSequence::CHECK_FIRST_FILE | BtImageSequence::ALLOW_NON_EXISTENT_MEDIA);
    EXPECT_TRUE(toRender->nonExistentMediaAllowed());
    EXPECT_FALSE(BtImageSequence::create(at("m.[1:3].png"))->nonExistentMediaAllowed());
}

TEST_F(ImageSequenceTest, aClipKeepsTheFramesAndPaddingOfItsSequence) {
    RCStrongPtr<PiImageSequence> const clip = BtImageSequence::create(at("c.[0001:0009|2].exr"), 1, 3);
    EXPECT_EQ(clip->getNbImages(), 3);
    EXPECT_EQ(clip->getStartFileNo(), 3);
    for (auto const& [index, name] : {std::pair{0, "c.0003.exr"}, {1, "c.0005.exr"}, {2, "c.0007.exr"}})
        EXPECT_EQ(clip->getFileNameAt(index), at(name)) << index;
}

TEST_F(ImageSequenceTest, fragmentsGiveBackTheSequenceTheyWereWrittenFrom) {
    for (char const* name : {"p.[0001:0003].exr", "p.[5,9,100].png", "single.tif", "q.[7].dpx"}) {
        RCStrongPtr<PiImageSequence> const written = BtImageSequence::create(at(name));
        std::string const fragment = fragmentOf(*written);
        EXPECT_EQ(XmlElement::parse(fragment).getChild("Path").getData(), at(name));
        EXPECT_EQ(XmlElement::parse(fragment).getNodeName(), BtImageSequence::IMAGE_SEQUENCE_ROOT_TAG);
        RCStrongPtr<PiImageSequence> const read = PiImageSequence::createFromFragment(fragment);
        ASSERT_FALSE(read.isNull()) << name;
        EXPECT_EQ(read->getPath(), written->getPath()) << name;
        EXPECT_EQ(read->getNbImages(), written->getNbImages()) << name;
        EXPECT_EQ(fragmentOf(*read), fragment) << name;
    }
}

TEST_F(ImageSequenceTest, fragmentsStoreProjectLocationsByTheirNames) {
    static bool const added = [] {
        BtImageSequence::getLocationSubstituter().addPattern("/qvLocationTest/project",
                                                             [](std::string& text) { text = "<Project>"; });
        return true;
    }();
    ASSERT_TRUE(added);
    RCStrongPtr<PiImageSequence> const sequence =
        BtImageSequence::create("/qvLocationTest/project/p.[1:3].exr");
    RCStrongPtr<PiImageSequence> const read = PiImageSequence::createFromFragment(fragmentOf(*sequence));
    EXPECT_EQ(read->getPath(), "<Project>/p.[1:3].exr");
}

TEST_F(ImageSequenceTest, olderFragmentsComeBackInTheCurrentForm) {
    struct Older {
        std::string body;
        std::string expected; // "" when no sequence is made
    };
    std::string const dir = at("");
    auto sequence = [&](std::string const& frames) {
        return "<Sequence><Prefix>" + dir + "s.</Prefix><Suffix>.exr</Suffix><FrameSequence>" + frames +
               "</FrameSequence></Sequence>";
    };
    for (Older const& c : std::vector<Older>{
             {sequence(R"(<Frames From="0098" To="0102"/>)"), "s.[0098:0102].exr"},
             {sequence("<Frame>5</Frame><Frame>9</Frame><Frame>100</Frame>"), "s.[5,9,100].exr"},
             {sequence(R"(<Frames From="1" To="3"/><Frame>7</Frame>)"), "s.[1:3,7].exr"},
             {sequence("<File>" + dir + "s.0004.exr</File><File>" + dir + "s.0005.exr</File>"),
              "s.[0004:0005].exr"},
             {"<File>" + dir + "one.0012.png</File>", "one.[0012].png"},
             {sequence(""), ""},
             {"<Sequence><Prefix>s.</Prefix><Suffix>.exr</Suffix></Sequence>", ""},
             {"", ""},
             {"<Path></Path>", ""}}) {
        RCStrongPtr<PiImageSequence> const read = load("ImageSequence", c.body);
        if (c.expected.empty()) {
            EXPECT_TRUE(read.isNull()) << c.body;
            continue;
        }
        ASSERT_FALSE(read.isNull()) << c.body;
        EXPECT_EQ(strip(read->getPath()), c.expected) << c.body;
        EXPECT_EQ(XmlElement::parse(fragmentOf(*read)).getChild("Path").getData(), read->getPath());
    }
}

TEST_F(ImageSequenceTest, fragmentsThatMakeNoSequenceAreRefusedPlainly) {
    EXPECT_TRUE(PiImageSequence::createFromFragment("<Movie><Path>a.mov</Path></Movie>").isNull());
    EXPECT_THROW(PiImageSequence::createFromFragment("<ImageSequence><Path>a"), XmlEx::ExParseError);
    try {
        load("StreamSequence", "<Path>a.mov</Path><Path>b.mov</Path>");
        ADD_FAILURE() << "two movies in one fragment";
    } catch (AssertionsEx::ExAssertionFailed const& failure) {
        EXPECT_NE(failure.getReason().find("elements.getCardinality() == 1"), std::string::npos);
    }
    EXPECT_TRUE(throwsWith<FfIOEx>([&] { load("StreamSequence", "<Path>" + at("gone.mov") + "</Path>"); },
                                   "gone.mov"));
}

TEST_F(ImageSequenceTest, filesAreWrittenInTheFormatOfThePattern) {
    RCStrongPtr<PiImageSequence> const sequence = BtImageSequence::create(at("w.[1:8].tif"));
    // The format is found once, by whichever render thread comes first.
    std::vector<std::thread> threads;
    for (int index = 0; index < 8; ++index)
        threads.emplace_back([&, index] {
            PiImageFilePtr const file = sequence->getImageForWriting(index, "compression=lzw");
            file->setSize(index + 1, 2);
            ImImage const block(ImLayout({0, index + 1, 0, 2}, ImFormat(3, ImPixelFormat::UINT8)), heap());
            std::fill_n(block.getMemory()->getData(), block.getMemory()->getSize(), std::byte{200});
            file->writeBlock(block);
            file->close();
        });
    for (std::thread& thread : threads)
        thread.join();
    for (int index = 0; index < 8; ++index)
        EXPECT_EQ(sequence->getImageForReading(index, heap())->getMaxRect().getWidth(), index + 1);

    // No image format has the pattern's extension: the first file is named,
    // whichever is written.
    RCStrongPtr<PiImageSequence> const movies =
        load("ImageSequence", "<Path>" + at("v.[1:3].mov") + "</Path>");
    EXPECT_TRUE(throwsWith<FfIOEx::ExUnknownFormat>([&] { movies->getImageForWriting(2, ""); }, "v.1.mov"));
}

#ifdef QV_TEST_HAS_FFMPEG
// Frame f, pixel (x, y) of the test movies; PNG frames keep it exactly.
std::array<std::uint8_t, 3> movieAt(int f, int x, int y) {
    return {static_cast<std::uint8_t>(40 * f + 10 * x), static_cast<std::uint8_t>(20 * y),
            static_cast<std::uint8_t>(200 - 30 * f)};
}

// A small movie of lossless frames, through the FFmpeg libraries.
void writeMovie(std::string const& path, int width, int height, int frames) {
    AVFormatContext* format = nullptr;
    ASSERT_GE(avformat_alloc_output_context2(&format, nullptr, "mov", path.c_str()), 0);
    AVCodec const* codec = avcodec_find_encoder(AV_CODEC_ID_PNG);
    ASSERT_NE(codec, nullptr);
    AVStream* stream = avformat_new_stream(format, nullptr);
    AVCodecContext* context = avcodec_alloc_context3(codec);
    context->width = width;
    context->height = height;
    context->pix_fmt = AV_PIX_FMT_RGB24;
    context->time_base = {1, 24};
    if (format->oformat->flags & AVFMT_GLOBALHEADER)
        context->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    ASSERT_GE(avcodec_open2(context, codec, nullptr), 0);
    ASSERT_GE(avcodec_parameters_from_context(stream->codecpar, context), 0);
    stream->time_base = context->time_base;
    // Declared, as real movies do: the image library seeks frames by their rate.
    stream->avg_frame_rate = {24, 1};
    stream->r_frame_rate = {24, 1};
    ASSERT_GE(avio_open(&format->pb, path.c_str(), AVIO_FLAG_WRITE), 0);
    ASSERT_GE(avformat_write_header(format, nullptr), 0);
    AVFrame* frame = av_frame_alloc();
    frame->format = context->pix_fmt;
    frame->width = width;
    frame->height = height;
    ASSERT_GE(av_frame_get_buffer(frame, 0), 0);
    AVPacket* packet = av_packet_alloc();
    auto drain = [&] {
        while (avcodec_receive_packet(context, packet) == 0) {
            av_packet_rescale_ts(packet, context->time_base, stream->time_base);
            packet->stream_index = stream->index;
            av_interleaved_write_frame(format, packet);
        }
    };
    for (int f = 0; f < frames; ++f) {
        ASSERT_GE(av_frame_make_writable(frame), 0);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                std::memcpy(frame->data[0] + y * frame->linesize[0] + 3 * x, movieAt(f, x, y).data(), 3);
        frame->pts = f;
        ASSERT_GE(avcodec_send_frame(context, frame), 0);
        drain();
    }
    avcodec_send_frame(context, nullptr);
    drain();
    av_write_trailer(format);
    av_packet_free(&packet);
    av_frame_free(&frame);
    avcodec_free_context(&context);
    avio_closep(&format->pb);
    avformat_free_context(format);
}
#endif

class MovieSequenceTest : public ImageSequenceTest {
protected:
    void SetUp() override {
        ImageSequenceTest::SetUp();
#ifdef QV_TEST_HAS_FFMPEG
        writeMovie(at("clip.mov"), WIDTH, HEIGHT, FRAMES);
#else
        GTEST_SKIP() << "built without the FFmpeg libraries: no movie can be written for the test";
#endif
    }

    // Every pixel of a frame read in 8 bits, against what was written.
    static ::testing::AssertionResult holdsFrame(ImImageConst const& strip, int f) {
        ImReadGuard const guard(strip);
        GeRectangle<int> const& rect = strip.getRect();
        for (int y = rect.y1; y < rect.y2; ++y)
            for (int x = rect.x1; x < rect.x2; ++x) {
                auto const* pixel = guard.getLineAs<std::uint8_t>(y) + 3 * (x - rect.x1);
                auto const expected = movieAt(f, x, y);
                if (!std::equal(expected.begin(), expected.end(), pixel))
                    return ::testing::AssertionFailure() << "frame " << f << " differs at " << x << "," << y;
            }
        return ::testing::AssertionSuccess();
    }

    static constexpr int WIDTH = 8;
    static constexpr int HEIGHT = 6;
    static constexpr int FRAMES = 4;
};

TEST_F(MovieSequenceTest, aMovieIsASequenceOfItsFramesAndComesBackFromItsFragment) {
    RCStrongPtr<PiImageSequence> const movie = BtImageSequence::create(at("clip.mov"));
    EXPECT_TRUE(movie->isStream());
    EXPECT_EQ(movie->getNbImages(), FRAMES);
    EXPECT_EQ(movie->getStartFileNo(), 0);
    EXPECT_EQ(movie->getSequenceName(), "clip");
    EXPECT_EQ(movie->getFileNameAt(2), at("clip.mov"));
    PiImageFilePtr const frame = movie->getImageForReading(1, heap());
    EXPECT_EQ(PiImageFileDetails::getDetailString(*frame), "MOV, 8 x 6, 3 channels (R G B), UINT8");
    std::string const fragment = fragmentOf(*movie);
    EXPECT_EQ(XmlElement::parse(fragment).getNodeName(), "StreamSequence");
    RCStrongPtr<PiImageSequence> const read = PiImageSequence::createFromFragment(fragment);
    ASSERT_FALSE(read.isNull());
    EXPECT_TRUE(read->isStream());
    EXPECT_EQ(read->getPath(), at("clip.mov"));
    EXPECT_EQ(read->getNbImages(), FRAMES);
    EXPECT_THROW(read->getImageForWriting(0, ""), FfIOEx::ExOpNotSupported);
}

TEST_F(MovieSequenceTest, framesReadFromManyThreadsAreEachTheirOwn) {
    RCStrongPtr<PiImageSequence> const movie = BtImageSequence::create(at("clip.mov"));
    std::vector<std::thread> threads;
    std::vector<int> good(FRAMES * 3, 0);
    for (int i = 0; i < FRAMES * 3; ++i)
        threads.emplace_back([&, i] {
            PiImageFilePtr const file = movie->getImageForReading(i % FRAMES, heap());
            file->setFormat(ImFormat(3, ImPixelFormat::UINT8));
            ImImageConst const strip = file->readStrip();
            good[i] = !strip.isNull() && strip.getRect() == GeRectangle<int>(0, WIDTH, 0, HEIGHT) &&
                      holdsFrame(strip, i % FRAMES) && file->readStrip().isNull();
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(std::count(good.begin(), good.end(), 1), FRAMES * 3);
}

TEST_F(MovieSequenceTest, aFrameGivesItsRegionInTheFormatAndChannelsAsked) {
    RCStrongPtr<PiImageSequence> const movie = BtImageSequence::create(at("clip.mov"));
    PiImageFilePtr const file = movie->getImageForReading(3, heap());
    EXPECT_EQ(file->getNbFileChannels(), 3);
    EXPECT_EQ(file->getMaxRect(), GeRectangle<int>(0, WIDTH, 0, HEIGHT));
    file->setRegion({2, 5, 1, 4});
    EXPECT_TRUE(holdsFrame(file->readStrip(), 3));
    // Blue, red and a constant alpha, in floats.
    file->setFormat(ImFormat(4, ImPixelFormat::HDR));
    file->setChannelAssignment({2, 0, PiImageFile::ZERO_CHANNEL, PiImageFile::ONE_CHANNEL});
    file->setRegion({0, WIDTH, 0, HEIGHT});
    ImImageConst const strip = file->readStrip();
    ASSERT_FALSE(strip.isNull());
    ImReadGuard const guard(strip);
    float const* pixel = guard.getLineAs<float>(5) + 4 * 7;
    auto const expected = movieAt(3, 7, 5);
    EXPECT_FLOAT_EQ(pixel[0], expected[2] / 255.0f);
    EXPECT_FLOAT_EQ(pixel[1], expected[0] / 255.0f);
    EXPECT_FLOAT_EQ(pixel[2], 0.0f);
    EXPECT_FLOAT_EQ(pixel[3], 1.0f);
    EXPECT_THROW(movie->getImageForReading(FRAMES, heap()), FfIOEx::ExReadError);
}

TEST_F(MovieSequenceTest, aMovieNamedByAnImageSequenceIsAFileOfAnotherKind) {
    std::filesystem::copy_file(at("clip.mov"), at("c.1.mov"));
    RCStrongPtr<PiImageSequence> const frames = load("ImageSequence", "<Path>" + at("c.[1].mov") + "</Path>");
    ASSERT_FALSE(frames.isNull());
    EXPECT_FALSE(frames->isStream());
    EXPECT_TRUE(
        throwsWith<FfIOEx::ExUnknownFormat>([&] { frames->getImageForReading(0, heap()); }, "c.1.mov"));
}

} // namespace
