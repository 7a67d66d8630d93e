"""The powers of a fleet by Spark, whose workers have qor-power.

usage: spark-submit on_spark.py LIST ANSWERS

LIST is a folder or file that Spark reads, its lines being an id, a tab and a radio file on one line. ANSWERS
becomes a folder of Parquet with a row for each radio and code, and ANSWERS-bad one with the bad radios and why.
"""

import sys

# What each partition goes through: a line out for each line in, in their order; status 0, also where lines are bad,
# which are answered in their places, and another one where the tool was killed or could not go on. Spark runs a
# partition whose status is not 0 again from its beginning, so nothing is lost or doubled.
COMMAND = "sh -c 'qor-power batch --quiet --jobs 1 || [ $? = 2 ]'"


def main():
    from pyspark import StorageLevel
    from pyspark.sql import SparkSession

    spark = SparkSession.builder.appName("powers of a fleet").getOrCreate()
    lines = spark.sparkContext.textFile(sys.argv[1])
    # Kept, as Spark reads the answers for their columns, for the codes and for the bad ones.
    answers = spark.read.json(lines.pipe(COMMAND, checkCode=True).persist(StorageLevel.DISK_ONLY))
    codes = answers.filter("error is null").selectExpr("id", "family", "explode(rows) as row")
    codes.select("id", "family", "row.*").write.parquet(sys.argv[2])
    bad = answers.filter("error is not null")
    bad.select("id", "radioFile", "error", "place").write.parquet(sys.argv[2] + "-bad")


if __name__ == "__main__":
    main()
