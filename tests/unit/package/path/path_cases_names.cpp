// What a single name may contain.
//
// createDir() and deleteFile() pass their bytes to the system's narrow interface. Windows reads
// them in the active code page, which is the system's choice: names outside ASCII are not expected
// to survive that.

#include "unit/package/path/path_cases.h"

namespace VelmoraQuavin::testing {
namespace {

Cases outsideAscii() {
    return {
        same("FirstPlane", kRead, "名前", "in the first plane"),
        same("FirstPlaneToMeasure", kSize, "{}\\名前", "18"),
        same("FirstPlaneToWrite", kWrite, "新", "done, +新=text"),
        same("FirstPlaneExists", kExists, "名前", "true"),
        same("FirstPlaneMissing", kExists, "名", "false"),
        same("BeyondFirstPlane", kRead, "😀", "beyond the first plane"),
        same("BeyondFirstPlaneToWrite", kWrite, "😀😀", "done, +😀😀=text"),
        same("BeyondFirstPlaneMissing", kExists, "😁", "false"),
        same("Composed", kRead, "caf\u00E9", "composed"),
        same("Decomposed", kRead, "cafe\u0301", "null"),
        same("DecomposedIsMissing", kExists, "cafe\u0301", "false"),
        same("DecomposedIsAnotherFile", kWrite, "cafe\u0301", "done, +cafe\u0301=text"),
        depends("code-page", "FirstPlaneToCreate", kCreateDir, "新", "done, +新/"),
        depends("code-page", "BeyondFirstPlaneToCreate", kCreateDir, "😀😀", "done, +😀😀/"),
        depends("code-page", "FirstPlaneToDelete", kDelete, "名前", "done, -名前"),
        depends("code-page", "LatinToDelete", kDelete, "caf\u00E9", "done, -caf\u00E9"),
    };
}

Cases notUtf8() {
    return {
        same("InvalidByteToRead", kRead, "\xFF", "bad conversion"),
        same("InvalidByteToMeasure", kSize, "\xFF", "bad conversion"),
        same("InvalidByteToWrite", kWrite, "\xFF", "bad conversion"),
        same("InvalidByteExists", kExists, "folder\\\xFF", "bad conversion"),
        same("Truncated", kRead, "caf\xC3", "bad conversion"),
        same("Overlong", kRead, "\xC0\xAF", "bad conversion"),
        same("HalfASurrogatePair", kExists, "\xED\xA0\x80", "bad conversion"),
        same("BothHalvesOfASurrogatePair", kRead, "\xED\xA0\xBD\xED\xB8\x80", "bad conversion"),
        same("PastTheLastCodePoint", kWrite, "\xF4\x90\x80\x80", "bad conversion"),
        same("InvalidUtf8ToDelete", kDelete, "missing\xFF", "throws"),
        same("InvalidUtf8BelowMissingToCreate", kCreateDir, "missing\\\xFF", "throws"),
        depends("code-page", "InvalidUtf8ToCreate", kCreateDir, "new\xFF", "done, +new\xFF/"),
    };
}

Cases upperAndLowerCase() {
    return {
        differs("letter-case", "UpperCase", kRead, "FILE", "null", "content"),
        differs("letter-case", "UpperCaseToMeasure", kSize, "Folder\\Inner", "throws", "5"),
        differs("letter-case", "UpperCaseOutsideAscii", kRead, "CAF\u00C9", "null", "composed"),
        differs("letter-case", "UpperCaseExists", kExists, "FOLDER", "false", "true"),
        differs("letter-case", "UpperCaseToCreate", kCreateDir, "FOLDER", "done, +FOLDER/", "done"),
        differs("letter-case", "UpperCaseToWrite", kWrite, "FILE", "done, +FILE=text",
                "done, +file=text"),
        differs("letter-case", "UpperCaseToDelete", kDelete, "FILE", "throws", "done, -file"),
    };
}

Cases reservedCharacters() {
    Cases cases;
    const std::string named[][2] = {{"Star", "*"},    {"QuestionMark", "?"}, {"Less", "<"},
                                    {"Greater", ">"}, {"Bar", "|"},          {"Quote", "\""},
                                    {"Bell", "\a"},   {"Tab", "\t"},         {"LineEnd", "\n"}};
    for (const auto& [title, character] : named) {
        const std::string path = "new" + character;
        cases.push_back(differs("reserved-characters", title + "ToCreate", kCreateDir, path,
                                "done, +" + path + "/", "done"));
        cases.push_back(differs("reserved-characters", title + "ToWrite", kWrite, path,
                                "done, +" + path + "=text", "done"));
        cases.push_back(
            differs("reserved-characters", title + "Exists", kExists, path, "false", "true"));
        cases.push_back(same(title + "ToRead", kRead, "fil" + character, "null"));
        cases.push_back(same(title + "ToDelete", kDelete, "fil" + character, "throws"));
    }
    cases.push_back(depends("streams", "ColonToWrite", kWrite, "new:part", "done, +new:part=text"));
    cases.push_back(depends("streams", "ColonExists", kExists, "new:part", "false"));
    return cases;
}

Cases trailingDotsAndSpaces() {
    return {
        differs("last-dots", "DotAtEnd", kRead, "file.", "null", "content"),
        differs("last-dots", "DotsAtEnd", kSize, "file..", "throws", "7"),
        differs("last-dots", "SpaceAtEnd", kRead, "file ", "null", "content"),
        differs("last-dots", "DotAndSpaceAtEnd", kRead, "file. ", "null", "content"),
        differs("last-dots", "DotAtEndExists", kExists, "file.", "false", "true"),
        differs("last-dots", "DotAtEndToCreate", kCreateDir, "new.", "done, +new./", "done, +new/"),
        differs("last-dots", "SpaceAtEndToCreate", kCreateDir, "new ", "done, +new /",
                "done, +new/"),
        differs("last-dots", "DotAtEndToWrite", kWrite, "new.", "done, +new.=text",
                "done, +new=text"),
        differs("last-dots", "SpaceAtEndToDelete", kDelete, "file ", "throws", "done, -file"),
        differs("last-dots", "DotAtEndOfAFolder", kRead, "folder.\\inner", "null", "inner"),
        same("DotAtEndOfMissing", kExists, "missing.", "false"),
        same("SpaceFirst", kCreateDir, " new", "done, + new/"),
        same("DotFirstInName", kWrite, ".new", "done, +.new=text"),
        same("DotInName", kWrite, "new.txt", "done, +new.txt=text"),
        same("SpaceInName", kWrite, "my new", "done, +my new=text"),
    };
}

}  // namespace

Cases pathNameCases() {
    Cases all;
    for (const Cases& cases : {outsideAscii(), notUtf8(), upperAndLowerCase(), reservedCharacters(),
                               trailingDotsAndSpaces()}) {
        all.insert(all.end(), cases.begin(), cases.end());
    }
    return all;
}

}  // namespace VelmoraQuavin::testing
