#include "sorvane/tools/Modes.h"

#include <exception>
#include <iostream>
#include <memory>

namespace sorvane {

Modes::Modes() = default;

Modes::~Modes() = default;

void Modes::addCategory(const std::string& name) { categories.emplace_back(name, std::vector<std::string>()); }

void Modes::addMode(const std::string& name, Creator creator) {
    if (categories.empty()) categories.emplace_back(std::string(), std::vector<std::string>());
    categories.back().second.push_back(name);
    creators[name] = std::move(creator);
}

Mode* Modes::createMode(const std::string&, args::ArgumentParser&) { return nullptr; }

void Modes::showModes(const std::string& program) const { showModes(program, std::cout); }

void Modes::showModes(const std::string& program, std::ostream& out) const {
    out << "Usage:" << std::endl;
    out << "    " << program << " <mode> [mode options...]" << std::endl;
    out << "    " << program << " <mode> -h" << std::endl;
    out << std::endl;
    for (const auto& category : categories) {
        if (!category.first.empty()) out << category.first << ":" << std::endl;
        for (const auto& mode : category.second) out << "    " << mode << std::endl;
    }
}

int Modes::run(int argc, char** argv) {
    std::vector<std::string> arguments;
    arguments.reserve(static_cast<size_t>(argc > 0 ? argc : 0));
    for (int i = 0; i < argc; ++i) arguments.emplace_back(argv[i]);
    return run(arguments);
}

int Modes::run(const std::vector<std::string>& arguments) {
    const std::string program = arguments.empty() ? std::string("talvex") : arguments[0];
    try {
        if (arguments.size() < 2) {
            std::cout << "No mode" << std::endl;
            showModes(program);
            return 2;
        }
        const std::string& name = arguments[1];
        args::ArgumentParser parser(name);
        parser.Prog(program + " " + name);
        args::HelpFlag help(parser, "help", "Show this help", {'h', "help"});
        auto found = creators.find(name);
        if (found == creators.end()) {
            std::cout << "Invalid mode " << name << std::endl;
            showModes(program);
            return 2;
        }
        std::unique_ptr<Mode> mode(found->second(parser));
        if (!mode) {
            std::cout << "Error: No creator for mode " << name << std::endl;
            return 2;
        }
        return mode->run(std::vector<std::string>(arguments.begin() + 2, arguments.end()));
    } catch (const std::exception& e) {
        std::cout << "Error: " << e.what() << std::endl;
        return 2;
    }
}

} // namespace sorvane
