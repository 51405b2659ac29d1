#ifndef TALVEX_APPS_TALVEX_CURVEPLOT_H
#define TALVEX_APPS_TALVEX_CURVEPLOT_H

#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace talvex_app {

// Curves over time grouped into panels, written as one SVG page: one panel
// per group, stacked, each with its own value axis and a legend.
class CurvePlot {
public:
    void add(const std::string& panel, const std::string& axis, const std::string& curve, double time, double value);
    bool empty() const { return panels.empty(); }
    void writeSvg(std::ostream& out, const std::string& title) const;

private:
    struct Panel {
        std::string axis;
        std::vector<std::string> order;
        std::map<std::string, std::vector<std::pair<double, double>>> curves;
    };
    std::vector<std::string> order;
    std::map<std::string, Panel> panels;
};

} // namespace talvex_app

#endif
