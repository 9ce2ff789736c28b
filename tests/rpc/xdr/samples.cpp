#include "samples.h"

#include <stdexcept>

std::unique_ptr<Record> sampleOf(const WireType& type) {
    for (const auto& samples : {samplesOfAddressing(), samplesOfManagement(), samplesOfTime()}) {
        for (const Sample& sample : samples) {
            if (sample.type == type.name) {
                if (sample.contents.size() != type.size) {
                    throw std::length_error("a sample of another type for " +
                                            std::string(type.name));
                }
                return std::make_unique<Record>(type, sample.contents.data());
            }
        }
    }
    throw std::out_of_range("no sample of " + std::string(type.name));
}
