// Writes pictures that fuzzing begins with: fuzz_image_seeds FOLDER

#include <cstdlib>
#include <fstream>

#include "images/Encoders.h"

int main(int count, char** words) {
    if (count != 2) return EXIT_FAILURE;
    for (const quiravent::test::Sample& sample : quiravent::test::samples()) {
        std::ofstream file(std::string(words[1]) + '/' + sample.name, std::ios::binary);
        const auto size = static_cast<std::streamsize>(sample.bytes.size());
        if (!file.write(reinterpret_cast<const char*>(sample.bytes.data()), size)) {
            return EXIT_FAILURE;
        }
    }
    return EXIT_SUCCESS;
}
