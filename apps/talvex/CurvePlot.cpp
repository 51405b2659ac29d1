#include "apps/talvex/CurvePlot.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <limits>
#include <sstream>

namespace talvex_app {

namespace {

const char* const kColours[] = {"#1f77b4", "#ff7f0e", "#2ca02c", "#d62728", "#9467bd", "#8c564b",
                                "#e377c2", "#7f7f7f", "#bcbd22", "#17becf"};

std::string escape(const std::string& text) {
    std::string out;
    for (char c : text) {
        if (c == '<') out += "&lt;";
        else if (c == '>') out += "&gt;";
        else if (c == '&') out += "&amp;";
        else out += c;
    }
    return out;
}

std::string number(double v) {
    std::ostringstream s;
    s << std::setprecision(4) << v;
    return s.str();
}

// A range that is never empty, so that flat curves still get an axis.
std::pair<double, double> padded(double lo, double hi) {
    if (!(lo <= hi)) return {0, 1};
    if (hi - lo < 1e-9) return {lo - 0.5, hi + 0.5};
    return {lo, hi};
}

} // namespace

void CurvePlot::add(const std::string& panel, const std::string& axis, const std::string& curve, double time,
                    double value) {
    if (!std::isfinite(time) || !std::isfinite(value)) return;
    auto [it, added] = panels.try_emplace(panel);
    if (added) {
        order.push_back(panel);
        it->second.axis = axis;
    }
    auto& points = it->second.curves[curve];
    if (points.empty()) it->second.order.push_back(curve);
    points.emplace_back(time, value);
}

void CurvePlot::writeSvg(std::ostream& out, const std::string& title) const {
    const double width = 900, plotLeft = 70, plotWidth = 640, panelHeight = 240, plotTop = 30, plotHeight = 170;
    const double height = 40 + panelHeight * static_cast<double>(std::max<size_t>(order.size(), 1));
    double t0 = std::numeric_limits<double>::infinity(), t1 = -t0;
    for (const auto& [name, panel] : panels)
        for (const auto& [curve, points] : panel.curves)
            for (const auto& p : points) t0 = std::min(t0, p.first), t1 = std::max(t1, p.first);
    std::tie(t0, t1) = padded(t0, t1);

    out << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << width << "\" height=\"" << height
        << "\" font-family=\"sans-serif\" font-size=\"12\">\n";
    out << "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n";
    out << "<text x=\"" << width / 2 << "\" y=\"22\" text-anchor=\"middle\" font-size=\"15\">" << escape(title)
        << "</text>\n";
    for (size_t p = 0; p < order.size(); ++p) {
        const Panel& panel = panels.at(order[p]);
        const double top = 40 + panelHeight * static_cast<double>(p) + plotTop;
        double v0 = std::numeric_limits<double>::infinity(), v1 = -v0;
        for (const auto& [curve, points] : panel.curves)
            for (const auto& pt : points) v0 = std::min(v0, pt.second), v1 = std::max(v1, pt.second);
        std::tie(v0, v1) = padded(v0, v1);
        const auto x = [&](double t) { return plotLeft + (t - t0) / (t1 - t0) * plotWidth; };
        const auto y = [&](double v) { return top + plotHeight - (v - v0) / (v1 - v0) * plotHeight; };

        out << "<g>\n<text x=\"" << plotLeft << "\" y=\"" << top - 8 << "\" font-weight=\"bold\">"
            << escape(order[p]) << "</text>\n";
        out << "<rect x=\"" << plotLeft << "\" y=\"" << top << "\" width=\"" << plotWidth << "\" height=\""
            << plotHeight << "\" fill=\"none\" stroke=\"#444\"/>\n";
        for (int k = 0; k <= 4; ++k) {
            const double v = v0 + (v1 - v0) * k / 4, t = t0 + (t1 - t0) * k / 4;
            out << "<line x1=\"" << plotLeft << "\" x2=\"" << plotLeft + plotWidth << "\" y1=\"" << y(v) << "\" y2=\""
                << y(v) << "\" stroke=\"#ddd\"/>\n";
            out << "<text x=\"" << plotLeft - 5 << "\" y=\"" << y(v) + 4 << "\" text-anchor=\"end\">" << number(v)
                << "</text>\n";
            out << "<text x=\"" << x(t) << "\" y=\"" << top + plotHeight + 15 << "\" text-anchor=\"middle\">"
                << number(t) << "</text>\n";
        }
        out << "<text x=\"" << plotLeft + plotWidth / 2 << "\" y=\"" << top + plotHeight + 30
            << "\" text-anchor=\"middle\">timestamp</text>\n";
        out << "<text transform=\"translate(" << 16 << " " << top + plotHeight / 2
            << ") rotate(-90)\" text-anchor=\"middle\">" << escape(panel.axis) << "</text>\n";
        for (size_t c = 0; c < panel.order.size(); ++c) {
            const auto& points = panel.curves.at(panel.order[c]);
            const char* colour = kColours[c % (sizeof kColours / sizeof *kColours)];
            out << "<polyline fill=\"none\" stroke=\"" << colour << "\" stroke-width=\"1.5\" points=\"";
            for (const auto& pt : points) out << x(pt.first) << "," << y(pt.second) << " ";
            out << "\"/>\n";
            if (points.size() == 1)
                out << "<circle cx=\"" << x(points[0].first) << "\" cy=\"" << y(points[0].second) << "\" r=\"3\" fill=\""
                    << colour << "\"/>\n";
            const double ly = top + 12 + 14 * static_cast<double>(c);
            if (ly < top + plotHeight + 25) {
                out << "<line x1=\"" << plotLeft + plotWidth + 12 << "\" x2=\"" << plotLeft + plotWidth + 30
                    << "\" y1=\"" << ly - 4 << "\" y2=\"" << ly - 4 << "\" stroke=\"" << colour
                    << "\" stroke-width=\"2\"/>\n";
                out << "<text x=\"" << plotLeft + plotWidth + 35 << "\" y=\"" << ly << "\">"
                    << escape(panel.order[c]) << "</text>\n";
            }
        }
        out << "</g>\n";
    }
    if (order.empty())
        out << "<text x=\"" << width / 2 << "\" y=\"80\" text-anchor=\"middle\">nothing was driven</text>\n";
    out << "</svg>\n";
}

} // namespace talvex_app
