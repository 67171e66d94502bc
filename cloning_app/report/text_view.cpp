#include "cloning_app/report/text_view.h"

#include <fmt/format.h>

#include <algorithm>

#include "cloning_app/report/comparison.h"

namespace vxclone {

namespace {

using vxcommon::Colour;

constexpr vxcommon::PrintableView kGap = "  ";

/// The number of differences that are named; the others are only counted.
constexpr std::size_t kMostDifferencesShown = 20;

/// The indentation of the continuation lines of a list entry.
constexpr std::size_t kIndent = 4;

/// The differences as a list, one on each line.
std::vector<std::string> linesOf(const NamedDifferences& differences) {
    std::vector<std::string> lines;
    const std::size_t shown = std::min(differences.list.size(), kMostDifferencesShown);
    if (shown != 0) {
        lines.push_back(differences.first + " -> " + differences.second);
    }
    for (std::size_t index = 0; index < shown; ++index) {
        const Difference& difference = differences.list[index];
        lines.push_back(vxcommon::printable(fmt::format(
            "  {}  {}", difference.what, wordsOf(difference, differences.first, differences.second))));
    }
    if (differences.list.size() > shown) {
        lines.push_back(fmt::format("  and {} more; --json names all", differences.list.size() - shown));
    }
    return lines;
}

/// The common end of both views for people.
class TextView : public ProgressView {
 public:
    TextView(std::string run, vxcommon::Writer out, vxcommon::Writer err, ViewOptions options)
        : run_(std::move(run)), out_(out), err_(err), options_(std::move(options)) {}

    void done(const Report& report) override {
        const vxcommon::Screen screen = options_.screen();
        out_.write(tableOf(report.rows, report.checks).render(screen));
        if (const std::string left = notChosen(report.rows); !left.empty()) {
            out_.line(paint(sentenceFor(screen, left), Colour::Dim, screen.coloured));
        }
        for (const std::string& line : linesOf(report.differences)) {
            out_.line(sentenceFor(screen, line, kIndent));
        }
        for (const std::string& sentence : report.closing) {
            out_.line(sentenceFor(screen, sentence));
        }
        out_.flush();
    }

    void failed(const Error& error) override {
        err_.line(sentenceFor(options_.errorScreen(), "vxclone: " + error.sentence));
        err_.flush();
    }

 protected:
    void say(const std::string& sentence) {
        out_.line(sentenceFor(options_.screen(), sentence));
        out_.flush();
    }
    vxcommon::Writer& out() { return out_; }
    const std::string& run() const { return run_; }
    const ViewOptions& options() const { return options_; }

 private:
    std::string run_;
    vxcommon::Writer out_;
    vxcommon::Writer err_;
    ViewOptions options_;
};

class PlainView final : public TextView {
 public:
    using TextView::TextView;

    void progress(const Progress& progress) override {
        if (!isWorthALine(progress)) {
            return;
        }
        shown_ = {progress, options().elapsed()};
        std::vector<std::string> parts;
        if (progress.percent) {
            parts.push_back(fmt::format("{} %", *progress.percent));
        }
        if (progress.phase) {
            parts.emplace_back(wordsOf(*progress.phase));
        }
        if (progress.entries != 0) {
            parts.push_back(fmt::format("{} of {}", progress.entry, progress.entries));
        }
        if (progress.category) {
            parts.emplace_back(categoryOf(*progress.category).name);
        }
        parts.push_back(clockText(options().elapsed()));
        out().line(vxcommon::printable(fmt::format("{} {}", run(), fmt::join(parts, ", "))));
        out().flush();
    }
    void category(const Row& row) override {
        say(std::string(categoryOf(row.category).name) + ": " + textOf(row));
    }
    void tick() override {}
    void clear() override {}
    void notice(const std::string& sentence) override { say(sentence); }

 private:
    static constexpr int kPercents = 10;
    static constexpr std::chrono::seconds kPause{5};

    struct Shown {
        Progress progress;
        std::chrono::milliseconds at;
    };

    /// In a log, a line for each small step would hide the important ones.
    bool isWorthALine(const Progress& progress) const {
        if (!shown_) {
            return true;
        }
        const Progress& before = shown_->progress;
        return progress.phase != before.phase ||
               (progress.category && progress.category != before.category) ||
               progress.percent.value_or(0) - before.percent.value_or(0) >= kPercents ||
               options().elapsed() - shown_->at >= kPause;
    }

    std::optional<Shown> shown_;
};

class TerminalView final : public TextView {
 public:
    using TextView::TextView;

    void progress(const Progress& progress) override {
        progress_ = progress;
        draw();
    }
    void category(const Row& row) override {
        latest_ = {std::string(categoryOf(row.category).name) + " " + std::string(wordsOf(row.verdict)),
                   colourOf(row), kLatest};
        draw();
    }
    void tick() override {
        ++ticks_;
        draw();
    }
    void notice(const std::string& sentence) override {
        clear();
        say(sentence);
    }
    void clear() override {
        if (!drawn_.empty()) {
            out().write("\r\x1b[K");
            out().flush();
        }
        drawn_ = {};
    }
    void done(const Report& report) override {
        clear();
        TextView::done(report);
    }
    void failed(const Error& error) override {
        clear();
        TextView::failed(error);
    }

 private:
    /// The parts of the line that a narrow terminal leaves out, beginning with the last one.
    enum Expendable { kStays, kPhase, kEntries, kAtWork, kBar, kLatest };

    static constexpr std::size_t kBarWidth = 10;

    std::string bar() const {
        std::string bar(kBarWidth, ' ');
        if (progress_.percent) {
            const auto filled =
                static_cast<std::size_t>(*progress_.percent) * kBarWidth / std::size_t{kWholePercent};
            bar.replace(0, filled, filled, '#');
        } else {
            bar[ticks_ % kBarWidth] = '#';
        }
        return "[" + bar + "]";
    }

    std::vector<Piece> pieces() const {
        std::vector<Piece> all = {{run()}, {bar(), Colour::Good, kBar}};
        if (progress_.percent) {
            all.push_back({fmt::format("{} %", *progress_.percent)});
        }
        if (progress_.phase) {
            all.push_back({std::string(wordsOf(*progress_.phase)), Colour::Plain, kPhase});
        }
        if (progress_.entries != 0) {
            all.push_back(
                {fmt::format("{} of {}", progress_.entry, progress_.entries), Colour::Plain, kEntries});
        }
        // In a backup the current category is not known.
        if (progress_.phase == ShownPhase::Load && progress_.category) {
            all.push_back({std::string(categoryOf(*progress_.category).name), Colour::Plain, kAtWork});
        }
        all.push_back({clockText(options().elapsed()), Colour::Dim});
        if (!latest_.text.empty()) {
            all.push_back(latest_);
        }
        return all;
    }

    void draw() {
        const vxcommon::Screen screen = options().screen();
        const vxcommon::Printable line = fitPieces(pieces(), screen.columns, screen.coloured);
        if (line != drawn_) {
            clear();
            out().write(line);
            out().flush();
            drawn_ = line;
        }
    }

    Progress progress_;
    std::size_t ticks_ = 0;
    Piece latest_ = {"", Colour::Plain, kLatest};
    vxcommon::Printable drawn_;
};

std::size_t widthOf(const std::vector<Piece>& pieces) {
    std::size_t width = 0;
    for (const Piece& piece : pieces) {
        width += (width == 0 ? 0 : kGap.text().size()) + piece.text.size();
    }
    return width;
}

}  // namespace

std::unique_ptr<ProgressView> makePlainView(std::string run, vxcommon::Writer out, vxcommon::Writer err,
                                            ViewOptions options) {
    return std::make_unique<PlainView>(std::move(run), out, err, std::move(options));
}

std::unique_ptr<ProgressView> makeTerminalView(std::string run, vxcommon::Writer out, vxcommon::Writer err,
                                               ViewOptions options) {
    return std::make_unique<TerminalView>(std::move(run), out, err, std::move(options));
}

std::string clockText(std::chrono::milliseconds elapsed) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(elapsed).count();
    return fmt::format("{}:{:02}", seconds / 60, seconds % 60);
}

vxcommon::Printable fitPieces(std::vector<Piece> pieces, std::size_t width, bool coloured) {
    const std::size_t room = width == 0 ? 0 : width - 1;
    while (widthOf(pieces) > room) {
        const auto first = std::max_element(
            pieces.begin(), pieces.end(),
            [](const Piece& one, const Piece& other) { return one.expendable < other.expendable; });
        if (first == pieces.end() || first->expendable == 0) {
            break;
        }
        pieces.erase(first);
    }
    vxcommon::Printable line;
    std::size_t used = 0;
    for (const Piece& piece : pieces) {
        const std::size_t gap = used == 0 ? 0 : kGap.text().size();
        if (used + gap >= room) {
            break;
        }
        const std::string text = piece.text.substr(0, room - used - gap);
        line += gap == 0 ? vxcommon::PrintableView("") : kGap;
        line += vxcommon::paint(vxcommon::printable(text), piece.colour, coloured);
        used += gap + text.size();
    }
    return line;
}

}  // namespace vxclone
