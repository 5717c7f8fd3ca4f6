#include "tag_reader.hpp"

#include <gtest/gtest.h>

namespace InferenceEngine::runtime {
namespace {

/** Returns all tags of a text: one character for the kind, then the name. */
std::string tagsOf(std::string_view text) {
    std::string tags;
    TagReader reader(text);
    while (const auto tag = reader.next()) {
        tags += tag->kind == Tag::Kind::Open ? " +" : tag->kind == Tag::Kind::Close ? " -" : " .";
        tags += tag->name;
    }
    return tags;
}

TEST(TagReaderTest, DistinguishesOpenCloseAndEmptyTags) {
    EXPECT_EQ(tagsOf("<net a='1'><layer/><data b=\"2\" /></net >"), " +net .layer .data -net");
}

TEST(TagReaderTest, SkipsEverythingThatIsNotATag) {
    EXPECT_EQ(tagsOf("\xEF\xBB\xBF<?xml version=\"1.0\"?><!DOCTYPE net> text "
                     "<a><!-- <b> --><![CDATA[<c>]]></a>"),
              " +a -a");
}

TEST(TagReaderTest, AQuotedBracketDoesNotEndATag) {
    EXPECT_EQ(tagsOf("<a x=\"1>2\" y='>'/><b/>"), " .a .b");
}

TEST(TagReaderTest, StopsWhereTheTextIsCutOff) {
    EXPECT_EQ(tagsOf("<a><b x=\"1"), " +a");
    EXPECT_EQ(tagsOf("<a><!-- never closed"), " +a");
    EXPECT_EQ(tagsOf("<a><![CDATA[ never closed"), " +a");
    EXPECT_EQ(tagsOf("<a><"), " +a");
    EXPECT_EQ(tagsOf(""), "");
}

TEST(TagReaderTest, FindsAttributesByTheirFullName) {
    TagReader reader(R"(<edge from-layer = "3" layer='4' id="a=b" from-port="0"/>)");
    const auto tag = reader.next();
    ASSERT_TRUE(tag);
    EXPECT_EQ(tag->attribute("from-layer"), "3");
    EXPECT_EQ(tag->attribute("layer"), "4");
    EXPECT_EQ(tag->attribute("id"), "a=b");
    EXPECT_EQ(tag->attribute("from-port"), "0");
    EXPECT_EQ(tag->attribute("port"), "");
}

TEST(TagReaderTest, BrokenAttributesAreNotFound) {
    Tag tag;
    tag.attributes = " id ";
    EXPECT_EQ(tag.attribute("id"), "");
    tag.attributes = " id=5";
    EXPECT_EQ(tag.attribute("id"), "");
    tag.attributes = " id=\"5";
    EXPECT_EQ(tag.attribute("id"), "");
}

TEST(DecodeReferencesTest, ReplacesNamedAndNumberedCharacters) {
    EXPECT_EQ(decodeReferences("a &lt;b&gt; &amp;&quot;&apos; &#65;&#x42;"), "a <b> &\"' AB");
    EXPECT_EQ(decodeReferences("&#xE9;&#x20AC;&#x1F600;"), "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(DecodeReferencesTest, KeepsEverythingThatIsNotAReference) {
    EXPECT_EQ(decodeReferences("a & b"), "a & b");
    EXPECT_EQ(decodeReferences("&unknown; &#x110000; &#; &#12x;"),
              "&unknown; &#x110000; &#; &#12x;");
    EXPECT_EQ(decodeReferences("&&amp;"), "&&");
    EXPECT_EQ(decodeReferences(""), "");
}

TEST(DecodeReferencesTest, ReferencesEndAtTheNextAmpersand) {
    EXPECT_EQ(decodeReferences("&am&lt;p;"), "&am<p;");
    EXPECT_EQ(decodeReferences("&;&#&#65&#65;&"), "&;&#&#65A&");
}

// This would take minutes if each one were followed to the end of the text.
TEST(DecodeReferencesTest, HandlesLongTextsOfAmpersandsQuickly) {
    const std::string ampersands(2 << 20, '&');
    EXPECT_EQ(decodeReferences(ampersands), ampersands);
    EXPECT_EQ(decodeReferences(ampersands + "amp;"), ampersands);

    std::string references;
    for (int i = 0; i < 1 << 20; ++i) {
        references += "&amp;";
    }
    EXPECT_EQ(decodeReferences(references), std::string(1 << 20, '&'));
}

}  // namespace
}  // namespace InferenceEngine::runtime
