#include "host/boot_image.h"
#include "host/startup.h"

int main(int argc, char** argv) {
    return kelmora::runKelmora(kelmora::bootImage(), argc, argv);
}
