// Times our JPEG decoder beside libjpeg-turbo's djpeg decoding the same files, and says how far our pixels
// are from djpeg's. Usage: jpeg_bench <picture.jpg>...
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "bench/timing.h"
#include "jpeg/decoder.h"

namespace {

using tl::bench::Clock;
using tl::bench::msSince;
using tl::bench::report;

std::vector<uint8_t> readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary | std::ios::ate);
    std::vector<uint8_t> data(in ? static_cast<size_t>(in.tellg()) : 0);
    in.seekg(0);
    in.read(reinterpret_cast<char*>(data.data()), static_cast<std::streamsize>(data.size()));
    return data;
}

// Runs djpeg with its output going to `output`; false when it could not be run.
bool runDjpeg(const std::vector<const char*>& args, const char* output) {
    const pid_t child = ::fork();
    if (child < 0) {
        return false;
    }
    if (child == 0) {
        const int fd = ::open(output, O_WRONLY | O_CREAT | O_TRUNC, 0600);
        if (fd < 0 || ::dup2(fd, 1) < 0) {
            ::_exit(127);
        }
        std::vector<char*> argv;
        for (const char* a : args) {
            argv.push_back(const_cast<char*>(a));
        }
        argv.push_back(nullptr);
        ::execvp("djpeg", argv.data());
        ::_exit(127);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// What decoding for the desktop costs: read the file, decode into fresh pixels, write a BMP file.
void decodeToBmp(const std::string& path, int threads, FILE* out) {
    const std::vector<uint8_t> file = readFile(path);
    const tl::JpegHeader header = tl::readJpegHeader(file);
    // Fresh pages, as a new DIB section has: no zeroing beforehand.
    const size_t size = tl::jpegBmpRowBytes(header.width) * static_cast<size_t>(header.height);
    const auto pixels = std::make_unique_for_overwrite<uint8_t[]>(size);
    if (tl::decodeJpeg(file, {pixels.get(), size}, tl::JpegOptions{threads}) != tl::JpegResult::decoded) {
        std::fprintf(stderr, "not decoded\n");
        std::exit(1);
    }
    uint8_t headers[54] = {'B', 'M'};
    std::fwrite(headers, 1, sizeof headers, out);
    std::fwrite(pixels.get(), 1, size, out);
    std::fflush(out);
}

// Best and median of a few rounds of each way of decoding one file.
void benchOneFile(const std::string& path, int rounds) {
    const std::vector<uint8_t> file = readFile(path);
    const tl::JpegHeader header = tl::readJpegHeader(file);
    if (!header.handled) {
        std::printf("%s: not a JPEG our decoder handles\n", path.c_str());
        return;
    }
    const size_t size = tl::jpegBmpRowBytes(header.width) * static_cast<size_t>(header.height);
    std::vector<uint8_t> pixels(size);
    std::printf("%s: %d x %d, %zu bytes, %d rounds\n", path.c_str(), header.width, header.height, file.size(), rounds);

    for (const int threads : {1, 2}) {
        std::vector<double> ms;
        for (int i = 0; i < rounds; ++i) {
            const auto start = Clock::now();
            tl::decodeJpeg(file, pixels, tl::JpegOptions{threads});
            ms.push_back(msSince(start));
        }
        report(threads == 1 ? "ours, 1 thread, into ready pixels" : "ours, 2 threads, into ready pixels", ms);
    }
    // What Scale pays for the decode: one thread, at each reduced size.
    for (const int eighths : {4, 3, 2, 1}) {
        std::vector<double> ms;
        for (int i = 0; i < rounds; ++i) {
            const auto start = Clock::now();
            tl::decodeJpeg(file, pixels, tl::JpegOptions{.threads = 1, .eighths = eighths});
            ms.push_back(msSince(start));
        }
        report(("ours, 1 thread, at " + std::to_string(eighths) + "/8").c_str(), ms);
    }
    FILE* devNull = std::fopen("/dev/null", "wb");
    double oursBest = 0;
    for (const int threads : {1, 2}) {
        std::vector<double> ms;
        for (int i = 0; i < rounds; ++i) {
            const auto start = Clock::now();
            decodeToBmp(path, threads, devNull);
            ms.push_back(msSince(start));
        }
        report(threads == 1 ? "ours, 1 thread, file to BMP" : "ours, 2 threads, file to BMP", ms);
        oursBest = *std::min_element(ms.begin(), ms.end());
    }
    std::fclose(devNull);

    std::vector<double> ppm;
    std::vector<double> bmp;
    for (int i = 0; i < rounds; ++i) {
        auto start = Clock::now();
        if (!runDjpeg({"djpeg", path.c_str()}, "/dev/null")) {
            std::printf("djpeg could not be run\n");
            return;
        }
        ppm.push_back(msSince(start));
        start = Clock::now();
        runDjpeg({"djpeg", "-bmp", path.c_str()}, "/dev/null");
        bmp.push_back(msSince(start));
    }
    report("djpeg to PPM (libjpeg-turbo)", ppm);
    report("djpeg -bmp (libjpeg-turbo)", bmp);
    std::printf("ours, 2 threads, file to BMP / djpeg -bmp: %.2fx\n",
                oursBest / *std::min_element(bmp.begin(), bmp.end()));

    // djpeg's BMP rows are laid out as ours: compare them byte for byte.
    char refPath[] = "/tmp/jpeg_bench_XXXXXX";
    const int fd = ::mkstemp(refPath);
    if (fd >= 0) {
        ::close(fd);
        runDjpeg({"djpeg", "-bmp", path.c_str()}, refPath);
        const std::vector<uint8_t> reference = readFile(refPath);
        ::unlink(refPath);
        tl::decodeJpeg(file, pixels, tl::JpegOptions{2});
        if (reference.size() >= 14 + size) {
            size_t offset = 0;
            for (size_t b = 13; b >= 10; --b) {
                offset = offset << 8 | reference[b];
            }
            int worst = 0;
            double sum = 0;
            for (size_t i = 0; i < size && offset + i < reference.size(); ++i) {
                const int d = std::abs(pixels[i] - reference[offset + i]);
                worst = std::max(worst, d);
                sum += d;
            }
            std::printf("difference from djpeg: max %d, mean %.4f per channel\n", worst,
                        sum / static_cast<double>(size));
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s <picture.jpg>...\n", argv[0]);
        return 2;
    }
    for (int i = 1; i < argc; ++i) {
        benchOneFile(argv[i], 7);
    }
    return 0;
}
