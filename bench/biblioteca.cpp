// The libraries in a host without a screen: from the program's begin to the answer of the first call, which
// loads both, opens a school and asks whether a row may be deleted. Time, processor and peak memory, medians
// of runs that are processes of their own, against the same program without the libraries.

#include "Cost.h"
#include "Measure.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <zvconfiguracion/library.h>
#include <zvconfiguracion/session.h>
#include <zvconfiguracion/zvconfiguracion.h>
#include <zvconfiguracion/zvdatos.h>

namespace {

using namespace zv::bench;

constexpr int maritalStates = 65;

ZvVariant must(void* object, const char* member, ZvVariant argument)
{
    ZvVariant result;
    ZvFailure failure;
    if (zv_call(object, member, argument, &result, &failure) < 0)
        throw std::runtime_error(failure.text);
    return result;
}

void* create(ZvLibrary& library, const std::string& file, const ZvGuid& wanted)
{
    ZvFailure failure;
    void* object = nullptr;
    if (zv_library_open(&library, file.c_str(), &failure) < 0)
        throw std::runtime_error(failure.text);
    if (zv_library_create(&library, &wanted, &ZV_IID_IDispatch, &object) < 0)
        throw std::runtime_error("no object");
    return object;
}

int callFirst(const std::string& libraries, const char* url, long long start)
{
    setenv("ZV_ESCRITORIO", "ninguno", 1);
    ZvLibrary data;
    ZvLibrary module;
    void* connection = create(data, libraries + "/libZVDatos.so", ZV_CLSID_Conexion);
    void* facade = create(module, libraries + "/libZVConfiguracion.so", ZV_CLSID_cAsignarDatos);
    must(connection, "Open", zv_text(url));
    ZvSession* session = zv_session_new(connection);
    must(facade, "ObtenerDatos", zv_object(session));
    zv_session_set(session, "lngRowData", zv_long(1));
    must(facade, "Eliminar", zv_long(maritalStates));
    tellCost(start);
    std::cout.flush();
    std::_Exit(0); // What it holds goes with it: leaving is not what is measured.
}

/// Runs a program of its own; what it tells of its cost is the measure.
void run(benchmark::State& state, const std::string& command)
{
    for (auto _ : state) {
        FILE* output = popen((command + " " + std::to_string(nowMicroseconds())).c_str(), "r");
        double took = 0;
        double worked = 0;
        double memory = 0;
        const int read = std::fscanf(output, "%lf %lf %lf", &took, &worked, &memory);
        if (pclose(output) != 0 || read != 3)
            throw std::runtime_error(command);
        state.SetIterationTime(took / 1e6);
        state.counters["cpu_ms"] = worked / 1e3;
        state.counters["MB"] = memory / 1024;
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && argv[1][0] != '-') {
        tellCost(std::stoll(argv[1]));
        return 0;
    }
    if (argc == 4)
        return callFirst(argv[1], argv[2], std::stoll(argv[3]));
    initialize(argc, argv);
    const std::filesystem::path self = std::filesystem::canonical("/proc/self/exe");
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / "zv_bench_biblioteca";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    const std::string url = "sqlite:" + (folder / "colegio.db").string();
    // By a program, so that this one has nothing of the libraries' needs loaded already.
    if (std::system(
            ((self.parent_path() / "zvconf").string() + " crear --bd " + url + " >/dev/null").c_str()) != 0)
        throw std::runtime_error("no school");
    const std::string libraries = (self.parent_path().parent_path() / "lib").string();
    timed(benchmark::RegisterBenchmark("nada", run, self.string()), 15);
    timed(benchmark::RegisterBenchmark("biblioteca", run, self.string() + " " + libraries + " " + url), 15);
    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    std::cout << "load and first call: " << medians.elapsed("biblioteca") - medians.elapsed("nada") << " ms, "
              << medians.counter("biblioteca", "cpu_ms") - medians.counter("nada", "cpu_ms")
              << " ms of processor (at most 30)\n";
    std::filesystem::remove_all(folder);
    return 0;
}
