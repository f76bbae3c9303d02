// Prints the angle of each value on standard input by SimGear's interpolation table: simgear FILE.

#include <simgear/math/interpolater.hxx>
#include <simgear/misc/sg_path.hxx>
#include <simgear/props/props.hxx>
#include <simgear/props/props_io.hxx>

#include <cstdio>

int main(int argc, char *argv[])
{
    if (argc != 2)
        return 2;
    SGPropertyNode root;
    readProperties(SGPath(argv[1]), &root);
    const SGInterpTable table(root.getNode("interpolation", true));
    double value = 0.0;
    while (std::scanf("%lf", &value) == 1)
        std::printf("%.17g\n", table.interpolate(value));
}
