#include "tests/com/IdlSource.h"

#include "tests/Places.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <fstream>
#include <ios>
#include <stdexcept>
#include <utility>

namespace contract {

namespace {

bool IsWordCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

/// The place after a text in quotes that begins at `at`.
std::size_t EndOfQuoted(const std::string& text, std::size_t at) {
    for (++at; text.at(at) != '"'; ++at) {
        if (text[at] == '\\') {
            ++at; // over what it protects
        }
    }
    return at + 1;
}

/// Words and single marks; comments and texts in quotes are left out.
std::vector<std::string> Tokens(const std::string& text) {
    std::vector<std::string> tokens;
    for (std::size_t at = 0; at < text.size();) {
        if (text.compare(at, 2, "//") == 0) {
            at = std::min(text.find('\n', at), text.size());
        } else if (text[at] == '"') {
            at = EndOfQuoted(text, at);
        } else if (IsWordCharacter(text[at])) {
            const std::size_t start = at;
            while (at < text.size() && IsWordCharacter(text[at])) {
                ++at;
            }
            tokens.push_back(text.substr(start, at - start));
        } else if (std::isspace(static_cast<unsigned char>(text[at])) != 0) {
            ++at;
        } else {
            tokens.emplace_back(1, text[at++]);
        }
    }
    return tokens;
}

class Reader {
  public:
    explicit Reader(std::vector<std::string> tokens) : tokens_(std::move(tokens)) {}

    IdlSource Read() {
        IdlSource source;
        while (!AtEnd()) {
            const std::string word = Take();
            if (word == "[") {
                SkipTo("]");
            } else if (word == "library") {
                source.library = Take();
            } else if (word == "coclass") {
                source.classes.insert(Take());
                SkipTo("}");
            } else if (word == "enum") {
                const std::string name = Take();
                source.enumerations[name] = Values();
            } else if (word == "interface") {
                const std::string name = Take();
                if (!AtEnd() && Take() == ":") { // else the interface is only named here
                    SkipTo("{");
                    source.interfaces[name] = Members();
                }
            }
        }
        return source;
    }

  private:
    bool AtEnd() const { return next_ == tokens_.size(); }
    const std::string& Take() {
        if (AtEnd()) {
            throw std::runtime_error("the IDL file ends in the middle");
        }
        return tokens_[next_++];
    }
    void SkipTo(const std::string& mark) {
        while (Take() != mark) {
        }
    }

    /// `name = value, … }` after the enumeration's name.
    std::vector<std::string> Values() {
        std::vector<std::string> values;
        SkipTo("{");
        for (std::string word = Take(); word != "}"; word = Take()) {
            if (word == "[") {
                SkipTo("]");
            } else if (word != ",") {
                values.push_back(word);
                while (word != "," && word != "}") {
                    word = Take();
                }
                if (word == "}") {
                    break;
                }
            }
        }
        return values;
    }

    /// `[…] HRESULT name(…); … }`
    std::vector<IdlMember> Members() {
        std::vector<IdlMember> members;
        std::string last;
        for (std::string word = Take(); word != "}"; word = Take()) {
            if (word == "[") {
                SkipTo("]");
            } else if (word == "(") {
                members.push_back({last, Parameters()});
            } else {
                last = word;
            }
        }
        return members;
    }

    /// `[…] type name, … )`: the name is the last word of each.
    std::vector<std::string> Parameters() {
        std::vector<std::string> names;
        std::string last;
        for (;;) {
            const std::string word = Take();
            if (word == "[") {
                SkipTo("]");
            } else if (word == "," || word == ")") {
                if (!last.empty()) {
                    names.push_back(last);
                }
                last.clear();
                if (word == ")") {
                    return names;
                }
            } else {
                last = word;
            }
        }
    }

    std::vector<std::string> tokens_;
    std::size_t next_ = 0;
};

/// The text of a file, with the files that it includes in their places; without
/// the dispinterfaces, which repeat the names of the interfaces.
std::string ReadWhole(const std::string& name) {
    std::ifstream file(tests::TopFolder() / "idl" / name, std::ios::binary);
    if (!file) {
        throw std::runtime_error("there is no " + name);
    }
    const std::string include = "#include \"";
    std::string text;
    for (std::string line; std::getline(file, line);) {
        if (line.ends_with("Members.idl\"")) {
            continue;
        }
        const bool isInclude = line.starts_with(include);
        text += isInclude ? ReadWhole(line.substr(include.size(), line.rfind('"') - include.size())) : line;
        text += '\n';
    }
    return text;
}

} // namespace

IdlSource ReadIdl(const std::string& name) {
    return Reader(Tokens(ReadWhole(name + ".idl"))).Read();
}

} // namespace contract
