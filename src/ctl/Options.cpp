#include "ctl/Options.h"

#include <optional>
#include <string_view>

namespace ctl {

namespace {

class Parser final {
public:
    explicit Parser(const std::vector<std::string>& arguments)
        : arguments_(arguments) {}

    std::variant<Options, std::string> parse() {
        bool endsOptions = false;
        while (next_ < arguments_.size() && error_.empty()) {
            const std::string& argument = arguments_[next_++];
            if (endsOptions || !argument.starts_with("--"))
                options_.words.push_back(argument);
            else if (argument == "--")
                endsOptions = true;
            else
                takeOption(argument);
        }
        if (!error_.empty())
            return error_;
        return options_;
    }

private:
    void takeOption(std::string_view argument) {
        const std::size_t equals = argument.find('=');
        const std::string_view name = argument.substr(0, equals);
        const bool hasValue = equals != std::string_view::npos;
        if (name == "--containers")
            takeValue(name, argument, options_.containers);
        else if (name == "--to")
            takeValue(name, argument, options_.to);
        else if (hasValue)
            error_ = std::string(name) + " is no option that takes a value";
        else if (name == "--json")
            options_.json = true;
        else if (name == "--version")
            options_.version = true;
        else if (name == "--help")
            options_.help = true;
        else
            error_ = std::string(name) + " is no option";
    }

    // "--name=value", or the argument that follows.
    void takeValue(std::string_view name, std::string_view argument, std::string& value) {
        value.clear();
        if (argument.size() > name.size())
            value = argument.substr(name.size() + 1);
        else if (next_ < arguments_.size())
            value = arguments_[next_++];
        if (value.empty())
            error_ = std::string(name) + " needs a value";
    }

    const std::vector<std::string>& arguments_;
    std::size_t next_ = 0;
    Options options_;
    std::string error_;
};

} // namespace

std::variant<Options, std::string> parseOptions(const std::vector<std::string>& arguments) {
    return Parser(arguments).parse();
}

} // namespace ctl
