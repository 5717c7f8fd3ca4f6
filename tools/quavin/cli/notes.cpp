#include "tools/quavin/cli/notes.h"

#include <algorithm>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "tools/quavin/cli/printing.h"
#include "tools/quavin/package/key.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::LogRecord;

// A call fails only once; more notes come from a package made to cause them.
constexpr std::size_t kMostNotes = 20;

class NoteKeeper : public VelmoraQuavin::ILogProcessor {
public:
    void process(const LogRecord& record) override {
        std::string note = printable(record.message);
        if (notes.size() < kMostNotes &&
            std::find(notes.begin(), notes.end(), note) == notes.end()) {
            notes.push_back(std::move(note));
        }
    }

    std::vector<std::string> notes;
};

const std::shared_ptr<NoteKeeper>& keeper() {
    static const auto keeper = std::make_shared<NoteKeeper>();
    return keeper;
}

}  // namespace

std::shared_ptr<VelmoraQuavin::ILogProcessor> noteKeeper() {
    return keeper();
}

void printNotes() {
    std::cout.flush();
    for (const std::string& note : keeper()->notes) {
        std::cerr << "quavin: note: " << withoutKeys(note) << '\n';
    }
    forgetNotes();
}

void forgetNotes() {
    keeper()->notes.clear();
}

}  // namespace quavin_tool
