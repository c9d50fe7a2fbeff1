// A drawing of 200,000 light polylines of 10 vertices: read, and written with all of it changed or
// none. Beside it the plain way: getline and strtod for reading, fprintf for writing. Peak memory
// is taken in a process of its own for each piece of work.

#include "base/file.h"
#include "base/progress.h"
#include "drawing/database.h"
#include "drawing/dxf_load.h"
#include "drawing/dxf_save.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace tessaran::drawing {
namespace {

constexpr int kPolylines = 200'000;
constexpr int kVertices = 10;
constexpr const char* kReadOnly = "read";
constexpr const char* kReadAndWrite = "read and write";
constexpr const char* kReadChangeAndWrite = "read, change all and write";

std::filesystem::path benchFile(const char* name) {
    return std::filesystem::temp_directory_path() /
           ("tessaran_bench_" + std::to_string(::getpid()) + name);
}

double vertexX(int polyline, int vertex) {
    return 2'000'000.0 + 37.25 * (polyline % 500) + 3.141592653 * vertex;
}
double vertexY(int polyline, int vertex) {
    return 500'000.0 + 41.5 * (polyline / 500) + 2.718281828 * (vertex % 3);
}

// The file is made by the program itself, once, and read by all.
const std::filesystem::path& inputFile() {
    static const std::filesystem::path path = [] {
        Database database;
        if (!startDrawing(database))
            std::abort();
        for (int i = 0; i < kPolylines; ++i) {
            host::Polyline p;
            p.closed = true;
            for (int v = 0; v < kVertices; ++v)
                p.vertices.push_back({{vertexX(i, v), vertexY(i, v)}, 0.0, 0.0, 0.0});
            if (!database.add({{}, "0", host::colour::kByLayer, "ByLayer", std::move(p)}))
                std::abort();
        }
        std::filesystem::path out = benchFile(".dxf");
        if (!saveDxf(database, out, {.keepBackup = false}))
            std::abort();
        static const struct Remover {
            std::filesystem::path file;
            ~Remover() { std::filesystem::remove(file); }
        } remover{out};
        return out;
    }();
    return path;
}

double fileSize() {
    return static_cast<double>(std::filesystem::file_size(inputFile()));
}

// The largest resident memory, bytes, of a process that does the work and nothing else.
double peakMemoryOf(const char* work) {
    inputFile();
    const pid_t child = ::fork();
    if (child == 0) {
        ::execl("/proc/self/exe", "dxf_bench", work, inputFile().c_str(), nullptr);
        ::_exit(1);
    }
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    return status == 0 ? 1024.0 * static_cast<double>(usage.ru_maxrss) : 0.0;
}

std::map<std::string, double>& seconds() {
    static std::map<std::string, double> all;
    return all;
}

class Stopwatch {
  public:
    explicit Stopwatch(std::string name) : name_(std::move(name)), start_(now()) {}
    Stopwatch(const Stopwatch&) = delete;
    Stopwatch& operator=(const Stopwatch&) = delete;
    ~Stopwatch() {
        double& best = seconds()[name_];
        const double took = now() - start_;
        best = best == 0.0 ? took : std::min(best, took);
    }

  private:
    static double now() {
        timespec t{};
        ::clock_gettime(CLOCK_MONOTONIC, &t);
        return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
    }
    std::string name_;
    double start_;
};

// getline for each line, strtod for each coordinate, into the same vertices.
void BM_ReadPlain(benchmark::State& state) {
    for (auto _ : state) {
        const Stopwatch watch("read plain");
        std::ifstream in(inputFile());
        std::string code;
        std::string value;
        std::vector<std::vector<host::Point2>> polylines;
        while (std::getline(in, code) && std::getline(in, value)) {
            const int number = std::atoi(code.c_str());
            if (number == 0)
                polylines.emplace_back();
            else if (number == 10)
                polylines.back().push_back({std::strtod(value.c_str(), nullptr), 0.0});
            else if (number == 20 && !polylines.back().empty())
                polylines.back().back().y = std::strtod(value.c_str(), nullptr);
        }
        benchmark::DoNotOptimize(polylines.data());
    }
}

void BM_Read(benchmark::State& state) {
    inputFile();
    for (auto _ : state) {
        Database database;
        base::NoProgress nobody;
        {
            const Stopwatch watch("read");
            if (!loadDxf(database, inputFile(), nobody) || database.entityCount() != kPolylines)
                state.SkipWithError("not read");
        }
    }
}

void BM_WritePlain(benchmark::State& state) {
    const std::filesystem::path out = benchFile("_plain.dxf");
    for (auto _ : state) {
        const Stopwatch watch("write plain");
        FILE* file = std::fopen(out.c_str(), "w");
        for (int i = 0; i < kPolylines; ++i) {
            std::fprintf(file,
                         "  0\nLWPOLYLINE\n  5\n%X\n330\n17\n100\nAcDbEntity\n  8\n0\n100\n"
                         "AcDbPolyline\n 90\n%d\n 70\n1\n",
                         i + 100, kVertices);
            for (int v = 0; v < kVertices; ++v)
                std::fprintf(file, " 10\n%.16g\n 20\n%.16g\n", vertexX(i, v), vertexY(i, v));
        }
        std::fflush(file);
        ::fsync(::fileno(file));
        std::fclose(file);
    }
    std::filesystem::remove(out);
}

void moveEveryFirstVertex(Database& database) {
    Transaction command(database, "MOVE");
    for (const host::EntityId id : database.select(host::SelectionFilter{})) {
        host::Entity entity = *database.find(id);
        std::get<host::Polyline>(entity.geometry).vertices[0].at.x += 0.5;
        if (!database.modify(entity))
            std::abort();
    }
    command.commit();
}

void writeAfter(benchmark::State& state, const std::string& name, bool change) {
    Database database;
    base::NoProgress nobody;
    if (!loadDxf(database, inputFile(), nobody))
        std::abort();
    if (change)
        moveEveryFirstVertex(database);
    const std::filesystem::path out = benchFile("_out.dxf");
    for (auto _ : state) {
        const Stopwatch watch(name);
        if (!saveDxf(database, out, {.keepBackup = false}))
            state.SkipWithError("not written");
    }
    std::filesystem::remove(out);
}

void BM_WriteUnchanged(benchmark::State& state) {
    writeAfter(state, "write unchanged", false);
}
void BM_WriteAllChanged(benchmark::State& state) {
    writeAfter(state, "write all changed", true);
}

BENCHMARK(BM_Read)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ReadPlain)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_WriteUnchanged)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_WriteAllChanged)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_WritePlain)->Unit(benchmark::kMillisecond)->Iterations(3);

void printRatios() {
    const auto ratio = [](const std::string& plain, const std::string& ours) {
        if (seconds()[ours] > 0.0 && seconds()[plain] > 0.0)
            std::printf("%s is %.2f times as fast as %s\n", ours.c_str(),
                        seconds()[plain] / seconds()[ours], plain.c_str());
    };
    ratio("read plain", "read");
    ratio("write plain", "write unchanged");
    ratio("write plain", "write all changed");
    for (const char* work : {kReadOnly, kReadAndWrite, kReadChangeAndWrite}) {
        const double peak = peakMemoryOf(work);
        std::printf("peak memory to %s: %.0f MB, %.2f times the file of %.0f MB\n", work,
                    peak / 1e6, peak / fileSize(), fileSize() / 1e6);
    }
}

// What the child process does: the work that the first argument names, on the file of the second.
int memoryRun(const std::string& work, const std::filesystem::path& file) {
    Database database;
    base::NoProgress nobody;
    if (!loadDxf(database, file, nobody))
        return 1;
    if (work == kReadChangeAndWrite)
        moveEveryFirstVertex(database);
    if (work == kReadOnly)
        return 0;
    const std::filesystem::path out = benchFile("_out.dxf");
    const bool written = saveDxf(database, out, {.keepBackup = false}).ok();
    std::filesystem::remove(out);
    return written ? 0 : 1;
}

} // namespace
} // namespace tessaran::drawing

int main(int argc, char** argv) {
    if (argc == 3 && argv[1][0] != '-')
        return tessaran::drawing::memoryRun(argv[1], argv[2]);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    tessaran::drawing::printRatios();
    return 0;
}
