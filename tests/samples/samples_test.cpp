/// @file
/// All C++ code in the documentation consists of snippets of the programs in docs/samples, to the
/// letter. Other tests compile these programs and compare the output of each with the text file
/// beside it; the tests here read the output of a snippet from that file.
///
/// A snippet lies between two lines `//! [name]`; its output follows a line `[name]` in the text
/// file. In a snippet, `// -> text` says that its output is this text; after a line `// ->`, the
/// lines of comment that follow are its output. In a document, a block of text is the output of the
/// block of C++ before it, and a block of JSON is a file beside the programs.
///
/// The page of errors has every message that the libraries' sources contain.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

const fs::path root = FOUNDATION_JSON_SOURCE_FOLDER;

bool begins_with(std::string_view text, std::string_view beginning) {
    return text.substr(0, beginning.size()) == beginning;
}

Lines all_lines(std::istream& stream) {
    Lines lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

Lines lines_of_file(const fs::path& path) {
    std::ifstream file(path);
    EXPECT_TRUE(file) << path;
    return all_lines(file);
}

std::string joined(const Lines& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + '\n';
    }
    return text;
}

/// The lines without their common indentation.
Lines dedented(Lines lines) {
    std::size_t indentation = std::string::npos;
    for (const std::string& line : lines) {
        indentation = std::min(indentation, line.find_first_not_of(' '));
    }
    for (std::string& line : lines) {
        line.erase(0, std::min(indentation, line.size()));
    }
    return lines;
}

// ---- Snippets ------------------------------------------------------------------------------

struct Snippet {
    std::string name;
    Lines code;
    Lines output;
};

std::string name_in(const std::string& line, std::string_view before) {
    const std::size_t begin = line.find_first_not_of(' ');
    if (begin == std::string::npos || line.compare(begin, before.size(), before) != 0 ||
        line.back() != ']') {
        return "";
    }
    return line.substr(begin + before.size(), line.size() - begin - before.size() - 1);
}

std::vector<Snippet> snippets_in(const Lines& source) {
    std::vector<Snippet> snippets;
    bool inside = false;
    for (const std::string& line : source) {
        const std::string name = name_in(line, "//! [");
        if (!name.empty()) {
            if (!inside) {
                snippets.push_back({name, {}, {}});
            } else {
                EXPECT_EQ(name, snippets.back().name) << "ends another snippet";
            }
            inside = !inside;
        } else if (inside) {
            snippets.back().code.push_back(line);
        }
    }
    EXPECT_FALSE(inside) << "a snippet does not end";
    for (Snippet& snippet : snippets) {
        snippet.code = dedented(snippet.code);
    }
    return snippets;
}

/// Gives each snippet its part of the program's output. A program that is a single snippet has no
/// parts.
void take_outputs(std::vector<Snippet>& snippets, const Lines& output) {
    if (snippets.size() == 1) {
        snippets.front().output = output;
        return;
    }
    Snippet* current = nullptr;
    for (const std::string& line : output) {
        const auto named =
            std::find_if(snippets.begin(), snippets.end(),
                         [&](const Snippet& snippet) { return line == '[' + snippet.name + ']'; });
        if (named != snippets.end()) {
            current = &*named;
        } else if (current != nullptr) {
            current->output.push_back(line);
        }
    }
}

std::vector<Snippet> all_snippets() {
    std::vector<Snippet> all;
    for (const fs::directory_entry& entry : fs::directory_iterator(root / "docs/samples")) {
        if (entry.path().extension() == ".cpp") {
            std::vector<Snippet> snippets = snippets_in(lines_of_file(entry.path()));
            take_outputs(snippets, lines_of_file(fs::path(entry.path()).replace_extension(".txt")));
            for (Snippet& snippet : snippets) {
                snippet.name = entry.path().filename().string() + " [" + snippet.name + "]";
                all.push_back(snippet);
            }
        }
    }
    return all;
}

/// The output of a snippet, according to its comments.
Lines results_in(const Lines& code) {
    Lines results;
    bool goes_on = false;
    for (const std::string& line : code) {
        const std::size_t begin = std::min(line.find_first_not_of(' '), line.size());
        const std::string text = line.substr(begin);
        const std::size_t arrow = line.find("// -> ");
        if (arrow != std::string::npos) {
            results.push_back(line.substr(arrow + 6));
        } else if (goes_on && begins_with(text, "// ")) {
            results.push_back(text.substr(3));
        } else {
            goes_on = text == "// ->";
        }
    }
    return results;
}

// ---- Documents -----------------------------------------------------------------------------

struct Block {
    std::size_t line;
    std::string language;
    Lines text;
};

/// The fenced blocks of a Markdown text.
std::vector<Block> blocks_of_markdown(const Lines& lines) {
    std::vector<Block> blocks;
    bool inside = false;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::size_t fence = lines[i].find("```");
        if (fence != std::string::npos && fence == lines[i].find_first_not_of(' ')) {
            if (!inside) {
                blocks.push_back({i + 1, lines[i].substr(fence + 3), {}});
            }
            inside = !inside;
        } else if (inside) {
            blocks.back().text.push_back(lines[i]);
        }
    }
    EXPECT_FALSE(inside) << "a block does not end";
    for (Block& block : blocks) {
        block.text = dedented(block.text);
    }
    return blocks;
}

/// The indented blocks in the comments of a header: as in Markdown, they follow an empty line and
/// are indented by four blanks or more.
std::vector<Block> blocks_of_header(const Lines& lines) {
    std::vector<Block> blocks;
    bool inside = false;
    bool after_empty = false;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::size_t begin = lines[i].find_first_not_of(' ');
        const bool is_comment =
            begin != std::string::npos && lines[i].compare(begin, 3, "///") == 0;
        const std::string text = is_comment ? lines[i].substr(begin + 3) : "";
        if (is_comment && begins_with(text, "     ") && (inside || after_empty)) {
            if (!inside) {
                blocks.push_back({i + 1, "cpp", {}});
            }
            inside = true;
            blocks.back().text.push_back(text);
        } else if (inside && is_comment && text.empty()) {
            blocks.back().text.push_back("");
        } else {
            inside = false;
        }
        after_empty = is_comment && text.empty();
    }
    for (Block& block : blocks) {
        while (block.text.back().empty()) {
            block.text.pop_back();
        }
        block.text = dedented(block.text);
    }
    return blocks;
}

std::vector<Block> blocks_of(const fs::path& path) {
    return path.extension() == ".md" ? blocks_of_markdown(lines_of_file(path))
                                     : blocks_of_header(lines_of_file(path));
}

Lines documents() {
    Lines paths;
    for (const char* folder : {".", "docs", "include/foundation/json"}) {
        for (const fs::directory_entry& entry : fs::directory_iterator(root / folder)) {
            if (entry.is_regular_file() &&
                (entry.path().extension() == ".md" || entry.path().extension() == ".hpp")) {
                paths.push_back(fs::relative(entry.path(), root).string());
            }
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

const Snippet* find(const std::vector<Snippet>& snippets, const Lines& code) {
    const auto found = std::find_if(snippets.begin(), snippets.end(),
                                    [&](const Snippet& snippet) { return snippet.code == code; });
    return found == snippets.end() ? nullptr : &*found;
}

// ---- Messages ------------------------------------------------------------------------------

/// The string literals of a source that have two words at least: pieces of messages. Comments and
/// messages of the compiler are left out.
Lines messages_in(const std::string& source) {
    static const std::regex remark("//[^\n]*|static_assert\\([^;]*;");
    static const std::regex joint("\"\\s*\"");
    static const std::regex literal("\"((?:[^\"\\\\\n]|\\\\.)*)\"");
    static const std::regex two_words("[a-zA-Z]+:? [a-zA-Z]+");
    const std::string code = std::regex_replace(std::regex_replace(source, remark, ""), joint, "");
    Lines messages;
    for (std::sregex_iterator i(code.begin(), code.end(), literal), end; i != end; ++i) {
        const std::string text = std::regex_replace((*i)[1].str(), std::regex("\\\\(.)"), "$1");
        if (std::regex_search(text, two_words)) {
            messages.push_back(text);
        }
    }
    return messages;
}

std::string text_of_file(const fs::path& path) {
    std::string text = joined(lines_of_file(path));
    for (const auto& [code, sign] : {std::pair("&quot;", "\""), std::pair("\\|", "|")}) {
        for (std::size_t at = 0; (at = text.find(code, at)) != std::string::npos;) {
            text.replace(at, std::string(code).size(), sign);
        }
    }
    return text;
}

// ---- Tests ---------------------------------------------------------------------------------

TEST(Documents, ShowSnippetsOfThePrograms) {
    const std::vector<Snippet> snippets = all_snippets();
    for (const std::string& path : documents()) {
        for (const Block& block : blocks_of(root / path)) {
            if (block.language == "cpp") {
                EXPECT_NE(find(snippets, block.text), nullptr)
                    << path << ':' << block.line << ": no program has this snippet:\n"
                    << joined(block.text);
            }
        }
    }
}

TEST(Documents, ShowTheOutputOfTheSnippets) {
    const std::vector<Snippet> snippets = all_snippets();
    for (const std::string& path : documents()) {
        const Snippet* last = nullptr;
        for (const Block& block : blocks_of(root / path)) {
            if (block.language == "cpp") {
                last = find(snippets, block.text);
            } else if (block.language == "text" && last != nullptr) {
                EXPECT_EQ(joined(block.text), joined(last->output)) << path << ':' << block.line;
            }
        }
    }
}

TEST(Documents, ShowFilesThatTheProgramsRead) {
    std::vector<Lines> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(root / "docs/samples")) {
        if (entry.path().extension() == ".json") {
            files.push_back(lines_of_file(entry.path()));
        }
    }
    for (const std::string& path : documents()) {
        for (const Block& block : blocks_of(root / path)) {
            if (block.language == "json") {
                EXPECT_NE(std::find(files.begin(), files.end(), block.text), files.end())
                    << path << ':' << block.line << ": no program reads this file:\n"
                    << joined(block.text);
            }
        }
    }
}

// The tests above would not find a block with another name.
TEST(Documents, HaveOneNameForTheLanguage) {
    for (const std::string& path : documents()) {
        for (const Block& block : blocks_of(root / path)) {
            for (const char* name : {"c++", "C++", "CPP", "cxx", "cc", "c", "{.cpp}", "hpp"}) {
                EXPECT_NE(block.language, name) << path << ':' << block.line << ": not cpp";
            }
        }
    }
}

/// What a pattern finds in a text, in its order: the first group of each match.
Lines found_by(const std::regex& pattern, const std::string& text) {
    Lines found;
    for (std::sregex_iterator i(text.begin(), text.end(), pattern), end; i != end; ++i) {
        found.push_back((*i)[1].str());
    }
    return found;
}

/// The part of a text from one piece of it to the next occurrence of another.
std::string part_of(const std::string& text, const std::string& from, const std::string& to) {
    const std::size_t begin = std::min(text.find(from), text.size());
    return text.substr(begin, text.find(to, begin) - begin);
}

// The order in which C++20 wants them named.
TEST(Documents, ListTheOptionsOfTheParserInTheOrderOfTheirDeclaration) {
    const std::string header = text_of_file(root / "include/foundation/json/parse_options.hpp");
    const std::string page = text_of_file(root / "docs/parsing.md");
    const Lines declared = found_by(std::regex("\n    [A-Za-z_:]+ ([a-z_]+) = "),
                                    part_of(header, "struct ParseOptions {", "\n};"));
    const Lines listed = found_by(std::regex("\n\\| `([a-z_]+)` \\|"),
                                  part_of(page, "| Option | Default | Meaning |", "\n\n"));
    EXPECT_EQ(listed, declared);
    EXPECT_GE(declared.size(), 5u);
}

TEST(Documents, ExplainEveryMessage) {
    const std::string page = text_of_file(root / "docs/errors.md");
    // The description of success, which no function returns, and what the converter says of uses
    // that no public function makes of it.
    const std::set<std::string> unused = {"No error",
                                          "unknown encoding: ", "text cannot be converted"};
    std::size_t count = 0;
    for (const char* folder :
         {"src/access", "src/grammar", "src/number", "src/parse_errors", "src/reading"}) {
        for (const fs::directory_entry& entry : fs::directory_iterator(root / folder)) {
            for (const std::string& message : messages_in(joined(lines_of_file(entry.path())))) {
                EXPECT_TRUE(page.find(message) != std::string::npos || unused.count(message) != 0)
                    << entry.path() << ": not in docs/errors.md: " << message;
                ++count;
            }
        }
    }
    for (const char* header :
         {"content.hpp", "convert.hpp", "members.hpp", "number.hpp", "pointer.hpp"}) {
        const fs::path path = root / "include/foundation/json" / header;
        for (const std::string& message : messages_in(joined(lines_of_file(path)))) {
            EXPECT_TRUE(page.find(message) != std::string::npos)
                << path << ": not in docs/errors.md: " << message;
            ++count;
        }
    }
    EXPECT_GT(count, 60u);
}

TEST(Snippets, HaveTheOutputThatTheirCommentsSay) {
    std::size_t count = 0;
    for (const Snippet& snippet : all_snippets()) {
        const Lines results = results_in(snippet.code);
        if (!results.empty()) {
            EXPECT_EQ(joined(results), joined(snippet.output)) << snippet.name;
            ++count;
        }
    }
    EXPECT_GT(count, 30u);
}

TEST(Snippets, HaveANameOfTheirOwnInTheirProgram) {
    std::map<std::string, int> names;
    for (const Snippet& snippet : all_snippets()) {
        EXPECT_EQ(++names[snippet.name], 1) << snippet.name;
    }
    EXPECT_GT(names.size(), 30u);
}

TEST(Snippets, AreShownSomewhere) {
    std::vector<Lines> shown;
    for (const std::string& path : documents()) {
        for (const Block& block : blocks_of(root / path)) {
            shown.push_back(block.text);
        }
    }
    for (const Snippet& snippet : all_snippets()) {
        EXPECT_NE(std::find(shown.begin(), shown.end(), snippet.code), shown.end()) << snippet.name;
    }
}

} // namespace
