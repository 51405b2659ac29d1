#include "sorvane/tools/Mode.h"

#include <exception>
#include <iostream>

namespace sorvane {

Mode::Mode(args::ArgumentParser& parser_) : parser(&parser_) {}

Mode::~Mode() = default;

int Mode::run(const std::vector<std::string>& arguments) {
    try {
        status = STATUS_DONE;
        parser->Reset();
        parser->ParseArgs(arguments);
        execute();
        return status;
    } catch (const args::Help&) {
        std::cout << *parser;
        return 1;
    } catch (const args::ParseError& e) {
        std::cerr << e.what() << std::endl;
        std::cerr << *parser;
        return 2;
    } catch (const std::exception& e) {
        std::cerr << "Error: " << e.what() << std::endl;
        return 2;
    }
}

} // namespace sorvane
