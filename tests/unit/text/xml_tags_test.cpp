#include "text/xml_tags.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace VelmoraQuavin::internal {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// All tags of a text: one character for the kind, then the name.
std::string tagsOf(std::string_view text) {
    std::string tags;
    XmlTags reader(text);
    while (const auto tag = reader.next()) {
        tags += tag->kind == XmlTag::Kind::kOpen    ? " +"
                : tag->kind == XmlTag::Kind::kClose ? " -"
                                                    : " .";
        tags += tag->name;
    }
    return tags;
}

TEST(XmlTagsTest, DistinguishesOpenCloseAndEmptyTags) {
    EXPECT_EQ(tagsOf("<net a='1'><layer/><data b=\"2\" /></net >"), " +net .layer .data -net");
}

TEST(XmlTagsTest, SkipsEverythingThatIsNotATag) {
    EXPECT_EQ(tagsOf("\xEF\xBB\xBF<?xml version=\"1.0\"?><!DOCTYPE net> text "
                     "<a><!-- <b> --><![CDATA[<c>]]></a>"),
              " +a -a");
}

TEST(XmlTagsTest, AQuotedBracketDoesNotEndATag) {
    EXPECT_EQ(tagsOf("<a x=\"1>2\" y='>'/><b/>"), " .a .b");
}

TEST(XmlTagsTest, StopsWhereTheTextIsCutOff) {
    EXPECT_EQ(tagsOf("<a><b x=\"1"), " +a");
    EXPECT_EQ(tagsOf("<a><!-- never closed"), " +a");
    EXPECT_EQ(tagsOf("<a><![CDATA[ never closed"), " +a");
    EXPECT_EQ(tagsOf("<a><"), " +a");
    EXPECT_EQ(tagsOf(""), "");
}

TEST(XmlTagsTest, FindsAttributesByTheirFullName) {
    XmlTags reader(R"(<edge from-layer = "3" layer='4' id="a=b" from-port="0"/>)");
    const auto tag = reader.next();
    ASSERT_TRUE(tag);
    EXPECT_EQ(tag->attribute("from-layer"), "3");
    EXPECT_EQ(tag->attribute("layer"), "4");
    EXPECT_EQ(tag->attribute("id"), "a=b");
    EXPECT_EQ(tag->attribute("from-port"), "0");
    EXPECT_EQ(tag->attribute("port"), "");
}

TEST(XmlTagsTest, BrokenAttributesAreNotFound) {
    XmlTag tag;
    tag.attributes = " id ";
    EXPECT_EQ(tag.attribute("id"), "");
    tag.attributes = " id=5";
    EXPECT_EQ(tag.attribute("id"), "");
    tag.attributes = " id=\"5";
    EXPECT_EQ(tag.attribute("id"), "");
}

// The elements of a text, each with the path to it.
std::string elementsOf(std::string_view text) {
    std::string elements;
    visitElements(text, [&elements](const XmlTag& tag, const XmlPath& path) {
        elements += ' ';
        for (const std::string_view name : path) {
            elements += std::string(name) + "/";
        }
        elements += tag.name;
    });
    return elements;
}

TEST(VisitElementsTest, VisitsEachElementWithThePathToIt) {
    EXPECT_EQ(elementsOf("<net><layers><layer/><layer><data/></layer></layers><edges/></net>"),
              " net net/layers net/layers/layer net/layers/layer net/layers/layer/data net/edges");
}

TEST(VisitElementsTest, StopsWhereNothingIsLeftToClose) {
    EXPECT_EQ(elementsOf("<a></a><b/></b><c/>"), " a b");
    EXPECT_EQ(elementsOf("</a><b/>"), "");
    EXPECT_EQ(elementsOf("<a><b>"), " a a/b");
}

TEST(WithoutReferencesTest, ReplacesNamedAndNumberedCharacters) {
    EXPECT_EQ(withoutReferences("a &lt;b&gt; &amp;&quot;&apos; &#65;&#x42;"), "a <b> &\"' AB");
    EXPECT_EQ(withoutReferences("&#xE9;&#x20AC;&#x1F600;"), "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(WithoutReferencesTest, KeepsEverythingThatIsNotAReference) {
    EXPECT_EQ(withoutReferences("a & b"), "a & b");
    EXPECT_EQ(withoutReferences("&unknown; &#x110000; &#; &#12x;"),
              "&unknown; &#x110000; &#; &#12x;");
    EXPECT_EQ(withoutReferences("&&amp;"), "&&");
    EXPECT_EQ(withoutReferences(""), "");
}

TEST(WithoutReferencesTest, ReferencesEndAtTheNextAmpersand) {
    EXPECT_EQ(withoutReferences("&am&lt;p;"), "&am<p;");
    EXPECT_EQ(withoutReferences("&;&#&#65&#65;&"), "&;&#&#65A&");
}

// This would take minutes if each '&' were scanned to the end of the text.
TEST(WithoutReferencesTest, HandlesLongTextsOfAmpersandsQuickly) {
    const std::string ampersands(2 << 20, '&');
    EXPECT_EQ(withoutReferences(ampersands), ampersands);
    EXPECT_EQ(withoutReferences(ampersands + "amp;"), ampersands);

    std::string references;
    for (int i = 0; i < 1 << 20; ++i) {
        references += "&amp;";
    }
    EXPECT_EQ(withoutReferences(references), std::string(1 << 20, '&'));
}

TEST(WithoutReferencesTest, ReferencesToSurrogatesAreKept) {
    EXPECT_EQ(withoutReferences("&#xD800;&#57343;"), "&#xD800;&#57343;");
}

TEST(SplitListTest, SplitsAtCommasThatAreNotEscaped) {
    EXPECT_THAT(splitList("one,two\\,three,\\four"), ElementsAre("one", "two,three", "\\four"));
    EXPECT_THAT(splitList("a&lt;b&#44;c"), ElementsAre("a<b", "c"));
    EXPECT_THAT(splitList("a,,b,"), ElementsAre("a", "", "b"));
    EXPECT_THAT(splitList("\\"), ElementsAre("\\"));
    EXPECT_THAT(splitList(""), IsEmpty());
}

}  // namespace
}  // namespace VelmoraQuavin::internal
