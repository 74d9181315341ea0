#include "standing/message.h"

#include <algorithm>
#include <charconv>
#include <map>

namespace qndr::standing {

namespace {

constexpr std::string_view Head = "[STANDING]";
constexpr std::string_view Format = "1";
/// No list of a true message comes near it.
constexpr std::size_t LongestText = 16 * 1024;
constexpr std::size_t MostEntries = 64;
constexpr std::size_t LongestIdentity = 64;

/// A name that goes into a line of its own: nothing that comes from a person's hand may end the line.
std::string OneLine(std::string_view text) {
    std::string line(text);
    for (char& c : line) {
        if (static_cast<unsigned char>(c) < ' ') {
            c = ' ';
        }
    }
    return line;
}

std::string Join(const std::vector<std::int64_t>& numbers) {
    std::string text;
    for (std::size_t index = 0; index < numbers.size() && index < MostEntries; ++index) {
        text += (text.empty() ? "" : " ") + std::to_string(numbers[index]);
    }
    return text;
}

std::string Join(const std::vector<std::string>& words) {
    std::string text;
    for (std::size_t index = 0; index < words.size() && index < MostEntries; ++index) {
        text += (text.empty() ? "" : " ") + words[index];
    }
    return text;
}

std::vector<std::string> Words(std::string_view text) {
    std::vector<std::string> words;
    while (!text.empty()) {
        const std::string_view word = text.substr(0, text.find(' '));
        if (!word.empty()) {
            words.emplace_back(word);
        }
        text.remove_prefix(std::min(text.size(), word.size() + 1));
    }
    return words;
}

std::optional<std::int64_t> NumberOf(std::string_view text) {
    std::int64_t number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && stop == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

/// The keys and values of a message's text; it is no message once a value was not what it should be.
class Fields {
  public:
    explicit Fields(std::string_view text) {
        valid_ = text.size() <= LongestText && TakeLine(text) == Head;
        while (valid_ && !text.empty()) {
            const std::string_view line = TakeLine(text);
            const std::size_t equals = line.find('=');
            if (equals != std::string_view::npos) {
                valid_ = values_.emplace(line.substr(0, equals), line.substr(equals + 1)).second;
            }
        }
    }

    bool Valid() const { return valid_; }
    std::string Text(std::string_view key) const {
        const auto found = values_.find(std::string(key));
        return found == values_.end() ? "" : found->second;
    }
    std::int64_t Number(std::string_view key) { return Checked(Text(key)); }
    std::vector<std::int64_t> Numbers(std::string_view key) {
        std::vector<std::int64_t> numbers;
        for (const std::string& word : List(key)) {
            numbers.push_back(Checked(word));
        }
        return numbers;
    }
    std::vector<std::string> List(std::string_view key) {
        std::vector<std::string> words = Words(Text(key));
        valid_ = valid_ && words.size() <= MostEntries;
        return words;
    }

  private:
    static std::string_view TakeLine(std::string_view& text) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(text.size(), end + 1));
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        return line;
    }
    std::int64_t Checked(const std::string& text) {
        const std::optional<std::int64_t> number = text.empty() ? 0 : NumberOf(text);
        valid_ = valid_ && number.has_value();
        return number.value_or(0);
    }

    bool valid_ = false;
    std::map<std::string, std::string, std::less<>> values_;
};

/// An identity as a part of a file's name: upper case, without braces; empty for what is none.
std::string NameOf(std::string_view uniqueID) {
    std::string name;
    for (const char c : uniqueID) {
        const char upper = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
        if ((upper >= 'A' && upper <= 'Z') || (upper >= '0' && upper <= '9') || upper == '-') {
            name += upper;
        } else if (c != '{' && c != '}') {
            return "";
        }
    }
    return name.size() <= LongestIdentity ? name : "";
}

} // namespace

bool SaysTheSame(const Message& left, const Message& right) {
    Message other = right;
    other.number = left.number;
    other.heard = left.heard;
    other.writtenOn = left.writtenOn;
    return ToText(left) == ToText(other);
}

std::string ToText(const Message& message) {
    std::string text(Head);
    const auto add = [&](std::string_view key, const std::string& value) {
        if (!value.empty() && value != "0") {
            text.append("\r\n").append(key).append("=").append(OneLine(value));
        }
    };
    const auto addNumber = [&](std::string_view key, std::int64_t value) { add(key, std::to_string(value)); };
    add("Format", std::string(Format));
    add("From", message.from);
    add("To", message.to);
    addNumber("Number", message.number);
    addNumber("Heard", message.heard);
    add("WrittenOn", message.writtenOn);
    add("Computer", message.computer);
    add("Program", message.program);
    addNumber("Schema", message.schema);
    addNumber("State", message.position.state);
    addNumber("NextTo", message.position.nextTo);
    addNumber("NextFrom", message.position.nextFrom);
    addNumber("Place", message.position.place);
    addNumber("Waiting", message.position.waiting);
    add("WaitingSince", message.position.waitingSince);
    addNumber("Conflicts", message.conflicts);
    addNumber("Problems", message.problems);
    addNumber("Refused", message.refused);
    add("FilesTo", Join(message.filesTo));
    add("FilesFrom", Join(message.filesFrom));
    add("Troubles", Join(message.troubles));
    addNumber("Frequency", message.frequency);
    add("ProvenOn", message.provenOn);
    addNumber("AsksForProof", message.asksForProof ? 1 : 0);
    add("Proof", message.proof);
    add("Answer", message.answer);
    addNumber("KnownPlace", message.knownPlace);
    addNumber("GaveUp", message.gaveUp ? 1 : 0);
    addNumber("GivenUp", message.givenUp);
    addNumber("Alike", message.alike ? 1 : 0);
    return text + "\r\n";
}

std::optional<Message> ReadMessage(std::string_view text) {
    Fields fields(text);
    if (!fields.Valid() || fields.Text("Format") != Format) {
        return std::nullopt;
    }
    Message message;
    message.from = fields.Text("From");
    message.to = fields.Text("To");
    message.number = fields.Number("Number");
    message.heard = fields.Number("Heard");
    message.writtenOn = fields.Text("WrittenOn");
    message.computer = fields.Text("Computer");
    message.program = fields.Text("Program");
    message.schema = fields.Number("Schema");
    message.position.state = static_cast<int>(fields.Number("State") & 0xFF);
    message.position.nextTo = fields.Number("NextTo");
    message.position.nextFrom = fields.Number("NextFrom");
    message.position.place = fields.Number("Place");
    message.position.waiting = fields.Number("Waiting");
    message.position.waitingSince = fields.Text("WaitingSince");
    message.conflicts = fields.Number("Conflicts");
    message.problems = fields.Number("Problems");
    message.refused = fields.Number("Refused");
    message.filesTo = fields.Numbers("FilesTo");
    message.filesFrom = fields.Numbers("FilesFrom");
    message.troubles = fields.List("Troubles");
    message.frequency = fields.Number("Frequency");
    message.provenOn = fields.Text("ProvenOn");
    message.asksForProof = fields.Number("AsksForProof") != 0;
    message.proof = fields.Text("Proof");
    message.answer = fields.Text("Answer");
    message.knownPlace = fields.Number("KnownPlace");
    message.gaveUp = fields.Number("GaveUp") != 0;
    message.givenUp = fields.Number("GivenUp");
    message.alike = fields.Number("Alike") != 0;
    return fields.Valid() ? std::optional(std::move(message)) : std::nullopt;
}

std::string FileName(std::string_view toUniqueID, std::string_view fromUniqueID) {
    const std::string to = NameOf(toUniqueID);
    const std::string from = NameOf(fromUniqueID);
    return to.empty() || from.empty() ? "" : to + "~" + from + "~standing.rsf";
}

} // namespace qndr::standing
