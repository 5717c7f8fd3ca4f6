#include <gtest/gtest.h>

#include <ios>
#include <sstream>

#include "quavin/logging.h"

namespace VelmoraQuavin {
namespace {

LogRecord recordOf(const String& message) {
    LogRecord record;
    record.message = message;
    record.category = 3;
    record.level = 5;
    record.tag = 7;
    record.time = 123'456'789;
    return record;
}

class FlushCounter : public std::stringbuf {
public:
    int flushes() const { return flushes_; }

protected:
    int sync() override {
        ++flushes_;
        return 0;
    }

private:
    int flushes_ = 0;
};

TEST(LogProcessorOStreamTest, WritesOnlyTheMessageAndANewline) {
    std::ostringstream stream;
    LogProcessorOStream processor(&stream);
    processor.process(recordOf("first"));
    processor.process(recordOf("second"));
    EXPECT_EQ(stream.str(), "first\nsecond\n");
}

TEST(LogProcessorOStreamTest, WritesUpToTheFirstZeroByte) {
    std::ostringstream stream;
    LogProcessorOStream(&stream).process(recordOf(String("before\0after", 12)));
    EXPECT_EQ(stream.str(), "before\n");
}

TEST(LogProcessorOStreamTest, AnEmptyMessageWritesAnEmptyLine) {
    std::ostringstream stream;
    LogProcessorOStream(&stream).process(recordOf(""));
    EXPECT_EQ(stream.str(), "\n");
}

TEST(LogProcessorOStreamTest, FlushesEveryLine) {
    FlushCounter buffer;
    std::ostream stream(&buffer);
    LogProcessorOStream processor(&stream);
    processor.process(recordOf("first"));
    EXPECT_EQ(buffer.flushes(), 1);
    processor.process(recordOf("second"));
    EXPECT_EQ(buffer.flushes(), 2);
}

TEST(LogProcessorOStreamTest, DoesNothingWithoutAStream) {
    LogProcessorOStream processor(nullptr);
    EXPECT_NO_THROW(processor.process(recordOf("message")));
}

TEST(LogProcessorOStreamTest, AFailedStreamIsIgnored) {
    std::ostringstream stream;
    stream.setstate(std::ios::badbit);
    LogProcessorOStream processor(&stream);
    EXPECT_NO_THROW(processor.process(recordOf("message")));
    EXPECT_EQ(stream.str(), "");
}

TEST(LogProcessorOStreamTest, DoesNotOwnTheStream) {
    std::ostringstream stream;
    { const LogProcessorOStream processor(&stream); }
    stream << "still there";
    EXPECT_EQ(stream.str(), "still there");
}

}  // namespace
}  // namespace VelmoraQuavin
