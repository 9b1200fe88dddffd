#include "SampleProblem.h"

#include <cmath>

namespace kelmarhost {

namespace {
// A concave curve through five points: most of the value is gained early.
ValueFunction curvedFunction(double minimum, double maximum, bool cost) {
    ValueFunction f = linearFunction(minimum, maximum, cost);
    f.type = 1;
    for (QPointF& p : f.points) {
        const double t = (p.x() - minimum) / (maximum - minimum);
        const double gain = cost ? 1.0 - t : t;
        p.setY(std::sqrt(gain));
    }
    return f;
}
}  // namespace

Problem sampleProblem() {
    Problem p;
    p.source = QStringLiteral("sample problem");
    p.title = QStringLiteral("Site for the regional warehouse");
    p.methodCode = 1;
    p.maxValue = 100;
    p.alternatives = {QStringLiteral("Northgate Business Park"), QStringLiteral("Riverside Docks"),
                      QStringLiteral("Airport Logistics Zone"), QStringLiteral("Old Mill Estate"),
                      QStringLiteral("Westfield Junction"), QStringLiteral("Hillcrest Industrial")};
    p.attributes = {
        {QStringLiteral("Rent"), QStringLiteral("Monthly rent in EUR"), true},
        {QStringLiteral("Motorway access"),
         QStringLiteral("Travel time to the motorway in minutes"), true},
        {QStringLiteral("Floor area"), QStringLiteral("Usable floor area in square metres"), false},
        {QStringLiteral("Loading docks"), QStringLiteral("Truck loading docks, number of docks"),
         false},
        {QStringLiteral("Labour pool"),
         QStringLiteral("Warehouse workers living within 30 minutes, in hundreds of people"), false},
    };
    p.scores = {
        {34000.0, 6.0, 18000.0, 12.0, 42.0},   // Northgate Business Park
        {29500.0, 18.0, 22500.0, 16.0, 55.0},  // Riverside Docks
        {43000.0, 3.0, 25000.0, 20.0, 31.0},   // Airport Logistics Zone
        {24000.0, 27.0, 15000.0, 8.0, 47.0},   // Old Mill Estate
        {37000.0, 9.0, 20000.0, 14.0, 38.0},   // Westfield Junction
        {27000.0, 22.0, 16500.0, 10.0, 60.0},  // Hillcrest Industrial
    };
    // Ranges a little wider than the scores, in round numbers.
    p.functions = {
        linearFunction(20000.0, 45000.0, true),
        curvedFunction(0.0, 30.0, true),
        linearFunction(10000.0, 30000.0, false),
        linearFunction(5.0, 25.0, false),
        curvedFunction(25.0, 65.0, false),
    };
    return p;
}

}  // namespace kelmarhost
